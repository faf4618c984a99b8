// Renders "Hello" with a stroke through the installed library and writes it as a PAM image.
#include "LmVersion.h"
#include "effect/LmEffect.h"
#include "foundation/List.h"
#include "foundation/LmString.h"
#include "text/LineInfo.h"
#include "text/LmTextObject.h"
#include "text/LmView.h"

#include <cstdio>

using namespace LmFontEffect;

int main(int argc, char** argv)
{
    if (argc != 3) return std::fprintf(stderr, "usage: consumer FONT OUT.pam\n"), 2;
    LmTextObject text;
    LmString hello;
    if (!text.Construct() || !hello.Construct("Hello") || !text.SetText(&hello) || !text.SetFont(argv[1])) return 1;
    LmPaint paint;
    paint.setTextSize(48.0f);
    text.SetPaint(paint);
    text.SetTextColor(0xFFFFD200u);
    text.GetEffect()->addStrokeText(4, 0xFF202A60u, 1.0f, 0, 1);
    text.GetView()->SetSize(150, 64);

    List lines;
    lines.Construct();
    auto* line = new LineInfo();
    line->baseline = 48;
    line->end = 5;
    line->bounds = LmRect(0, 3, 150, 60);
    lines.Add(line);
    text.SetLineInfo(&lines);
    lines.RemoveAll();

    LmEffect* e = text.GetEffect();
    int w = 150 + e->getLeftOffset() + e->getRightOffset(), h = 64 + e->getTopOffset() + e->getBottomOffset();
    text.GetView()->SetBitmapWidth(w);
    text.GetView()->SetBitmapHeight(h);
    const uint32_t* argb = text.RenderTextEffect(w, h);
    FILE* f = argb ? std::fopen(argv[2], "wb") : nullptr;
    if (!f) return 1;
    std::fprintf(f, "P7\nWIDTH %d\nHEIGHT %d\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n", w, h);
    int inked = 0;
    for (int i = 0; i < w * h; ++i) {
        uint32_t p = argb[i];
        unsigned char rgba[4] = {(unsigned char)(p >> 16), (unsigned char)(p >> 8), (unsigned char)p, (unsigned char)(p >> 24)};
        std::fwrite(rgba, 1, 4, f);
        inked += rgba[3] != 0;
    }
    std::fclose(f);
    std::printf("lmeffect %s: %dx%d, %d pixels inked\n", LMEFFECT_VERSION_STRING, w, h, inked);
    return inked > 0 ? 0 : 1;
}
