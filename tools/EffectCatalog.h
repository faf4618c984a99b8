#ifndef LMTEXT_EFFECTCATALOG_H
#define LMTEXT_EFFECTCATALOG_H

#include "EffectInfo.h"

#include <string>
#include <vector>

namespace LmFontEffect {
class LmEffect;
}

namespace LmTextTool {

class EffectRequest;

// Every effect kind the library defines, with the parameters of its add operation.
class EffectCatalog {
public:
    static const std::vector<EffectInfo>& all();
    // Null for an unknown name.
    static const EffectInfo* find(const std::string& name);
    // The effect, or a ToolError (exit 2) naming the valid ones.
    static const EffectInfo& require(const std::string& name, const std::string& origin);
    static std::string names();

    // Whether this build has a layer for the kind: tried on a scratch stack.
    static bool isAvailable(const EffectInfo& info);
    static std::vector<const EffectInfo*> available();

    // Adds the effect through its add operation; a kind without a layer in this build is a
    // ToolError (exit 1). Returns the layer id.
    static int addTo(LmFontEffect::LmEffect& stack, const EffectRequest& request);

    // The effects part of --help: every parameter with its range and default.
    static std::string helpText();
};

} // namespace LmTextTool

#endif
