#ifndef LMFONTEFFECT_EFFECT_LMECOREBASE_H
#define LMFONTEFFECT_EFFECT_LMECOREBASE_H

#include "effect/LmECore.h"

namespace LmFontEffect {

// Effect kinds as returned by getStyle().
enum LmEffectKind {
    LM_EFFECT_OUTER_SHADOW = 1,
    LM_EFFECT_INNER_SHADOW = 2,
    LM_EFFECT_OUTER_GLOW = 3,
    LM_EFFECT_INNER_GLOW = 4,
    LM_EFFECT_BEVEL = 5,
    LM_EFFECT_EMBOSS = 6,
    LM_EFFECT_LINEAR_GRADIENT = 7,
    LM_EFFECT_RADIAL_GRADIENT = 8,
    LM_EFFECT_STROKE_ALIAS = 9, // no layer class; ordered like a stroke
    LM_EFFECT_STROKE = 10,
    LM_EFFECT_PATTERN = 11,
    LM_EFFECT_TEXT = 12,
    LM_EFFECT_BASE = 13,
};

// Defaults for every layer operation. A concrete layer sets its kind in its constructor, owns a
// private copy of its parameter record, and overrides getOffset (or, for the outer shadow, the
// four side offsets) and doPostProcessing.
class LmECoreBase : public LmECore {
public:
    LmECoreBase() = default;

    int initEffect(ParamInit*) override { return 1; }
    int render(ParamRender*) override { return 1; }
    int doPostProcessing(ParamPostProcessing*) override { return 0; }
    float getOpacity() override { return 1.0f; }
    int getStyle() override { return style; }
    int getLeftOffset() override { return getOffset(); }
    int getRightOffset() override { return getOffset(); }
    int getTopOffset() override { return getOffset(); }
    int getBottomOffset() override { return getOffset(); }
    void setId(int newId) override { id = newId; }
    int getId() override { return id; }
    int getOffset() override { return 0; }

protected:
    // Puts a fresh copy in place of the held record. The copy is built (as the argument) before
    // the old record goes, so a layer can be handed its own record.
    template <class Record> static void replaceRecord(Record*& held, Record* copy)
    {
        delete held;
        held = copy;
    }

    int style = LM_EFFECT_BASE;
    int id = -1;
};

} // namespace LmFontEffect

#endif
