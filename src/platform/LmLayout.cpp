#include "platform/LmLayout.h"

#include <algorithm>

namespace LmFontEffect {

void LmLayout::joinBounds(const LmGlyphBox& box)
{
    if (box.empty()) return;
    if (mBounds.empty()) {
        mBounds = box;
        return;
    }
    mBounds.left = std::min(mBounds.left, box.left);
    mBounds.top = std::min(mBounds.top, box.top);
    mBounds.right = std::max(mBounds.right, box.right);
    mBounds.bottom = std::max(mBounds.bottom, box.bottom);
}

} // namespace LmFontEffect
