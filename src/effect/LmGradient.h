#ifndef LMFONTEFFECT_EFFECT_LMGRADIENT_H
#define LMFONTEFFECT_EFFECT_LMGRADIENT_H

namespace LmFontEffect {

// One colour stop of a ramp: ARGB colour, opacity 0..1, position 0..1 along the ramp.
class LmGradient {
public:
    unsigned colour = 0;
    float opacity = 0.0f;
    float position = 0.0f;
};

} // namespace LmFontEffect

#endif
