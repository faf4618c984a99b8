#ifndef LMTEXT_SHOWCASE_H
#define LMTEXT_SHOWCASE_H

#include "RgbaImage.h"

#include <string>
#include <vector>

namespace LmTextTool {

// One image with a labelled cell per effect kind this build has (found by trying each on a
// stack), plus the plain text and one combination, in a grid.
class Showcase {
public:
    struct Options {
        std::string font = "DejaVu Sans";
        std::string text = "Effect";
        double size = 64.0;
        int columns = 3;
    };

    struct Cell {
        std::string label;
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
    };

    static RgbaImage render(const Options& options, std::vector<Cell>* cells = nullptr,
                            std::vector<std::string>* missing = nullptr);
};

} // namespace LmTextTool

#endif
