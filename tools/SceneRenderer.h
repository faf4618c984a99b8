#ifndef LMTEXT_SCENERENDERER_H
#define LMTEXT_SCENERENDERER_H

#include "RgbaImage.h"
#include "Scene.h"

#include <string>
#include <vector>

namespace LmTextTool {

// Renders a scene through the library the way the Java side drives it: a text object with its
// font, paint, view and lines, the effects added to its stack, a bitmap of the view size plus
// the stack's margins, and the text object's own render.
class SceneRenderer {
public:
    struct Result {
        RgbaImage image;
        std::string keyHex;    // the effect stack's key, text layer included
        std::string fontNote;  // set when fontconfig gave a file that does not carry the family's name
        int viewWidth = 0;
        int viewHeight = 0;
    };

    // A font file path, or a family name that fontconfig resolves to a file. Unreadable files
    // and unknown families are ToolErrors (exit 1).
    static std::string resolveFont(const std::string& font, std::string* note = nullptr);

    static Result render(const Scene& scene);
};

} // namespace LmTextTool

#endif
