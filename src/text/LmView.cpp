#include "text/LmView.h"

#include "foundation/LmLog.h"

namespace LmFontEffect {

namespace {
const char* const kTag = "LmView";
}

LmView::LmView() : bitmapSize(new int32_t[2]()) {}

LmView::~LmView() { delete[] bitmapSize; }

int LmView::SetSize(int w, int h)
{
    if (w < 0 || h < 0) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "SetSize() - size invalid");
        return 0;
    }
    width = w;
    height = h;
    return 1;
}

int LmView::SetBitmapWidth(int w)
{
    if (w < 0) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "SetBitmapWidht() - width[%d] is invalid", w);
        return 0;
    }
    bitmapSize[0] = w;
    return 1;
}

int LmView::SetBitmapHeight(int h)
{
    if (h < 0) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "SetBitmapHeight() - height[%d] is invalid", h);
        return 0;
    }
    bitmapSize[1] = h;
    return 1;
}

int LmView::SetPadding(int left, int top, int right, int bottom)
{
    paddingLeft = left;
    paddingTop = top;
    paddingRight = right;
    paddingBottom = bottom;
    return 1;
}

} // namespace LmFontEffect
