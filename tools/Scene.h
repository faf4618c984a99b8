#ifndef LMTEXT_SCENE_H
#define LMTEXT_SCENE_H

#include "EffectRequest.h"

#include <string>
#include <vector>

namespace LmTextTool {

// Everything one render needs: text, font, paint, view geometry and the effect stack in the
// order the effects are added. Filled from a JSON scene file, then from the command line.
struct Scene {
    std::string text;
    std::string font = "DejaVu Sans";  // file path, or a family name for fontconfig
    double size = 48.0;
    unsigned color = 0xFF000000u;
    bool bold = false;
    bool italic = false;
    int width = -1;   // view size; negative: fit to the text
    int height = -1;
    int padding[4] = {0, 0, 0, 0};  // left, top, right, bottom
    int gravity = 0x33;              // left | top
    int align = -1;                  // TextLayout::Align; negative: from the horizontal gravity
    double lineSpacing = 1.0;
    bool wrap = false;
    bool clipToAdvance = false;  // cut each line's ink to its advance, as on Android
    int maxLines = 0;  // 0: every line
    unsigned background = 0;  // painted behind the render in the PNG; transparent by default
    unsigned lineBackground = 0;
    bool lineBackgroundSet = false;
    std::vector<EffectRequest> effects;

    // Reads a scene file. An unreadable file is a ToolError with exit 1 naming the path and
    // the reason; malformed JSON, unknown keys, effects or parameters and malformed values
    // exit 2 naming the path, the key and the reason.
    static Scene load(const std::string& path);

    // The text forms shared by scene files and the command line.
    static int parseGravity(const std::string& text, const std::string& what);
    static int parseAlign(const std::string& text, const std::string& what);
    static void parsePadding(const std::string& text, const std::string& what, int out[4]);
    static std::string keyNames();
};

} // namespace LmTextTool

#endif
