#ifndef LMTEXT_EFFECTINFO_H
#define LMTEXT_EFFECTINFO_H

#include <string>
#include <vector>

namespace LmFontEffect {
class LmEffect;
}

namespace LmTextTool {

class EffectRequest;

// How the effect stack's add operation treats a number before the layer sees it. The tool
// mirrors these rules only to tell the user; the raw value is what it passes on.
enum class ParamRule {
    None,       // passed unchanged
    Opacity,    // above 1 gives 1, not above 0 gives 0
    Pixels,     // truncated to a whole number, clamped to 0..100
    Angle,      // truncated, wrapped into 0..359
    Altitude,   // truncated, wrapped into 0..89
    Scale2,     // at most 2, not above 0 gives 0
    Scale10,    // at most 10, not above 0 gives 0
    Depth,      // negative gives 0, at most 10
    Soften,     // whole number clamped to 0..16
};

enum class ParamType { Number, Integer, Choice, Colour, Stops, Image };

struct ParamChoice {
    std::string name;
    int value;
};

// One parameter of an effect's add operation, as the command line and scene files name it.
struct ParamInfo {
    std::string name;
    ParamType type;
    ParamRule rule;
    std::string defaultText;
    std::string help;
    std::vector<ParamChoice> choices;
};

// One effect kind: its command-line name, its layer kind, its parameters in the order the add
// operation takes them, and the call that adds it to a stack (the layer id, or -1 when this
// build has no layer for the kind).
struct EffectInfo {
    std::string name;
    int kind;
    std::string summary;
    std::vector<ParamInfo> params;
    int (*add)(LmFontEffect::LmEffect& stack, const EffectRequest& request);

    const ParamInfo* findParam(const std::string& key) const;
    std::string paramNames() const;
};

} // namespace LmTextTool

#endif
