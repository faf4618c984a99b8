// Times one render of a three-line paragraph through the text object with the text layer
// only: shaping, line masks, the effect pass and the output composite, at 48 px and 160 px,
// without and with line backgrounds.
#include "foundation/List.h"
#include "foundation/LmString.h"
#include "platform/LmPaint.h"
#include "platform/LmPlatformFont.h"
#include "text/FontManager.h"
#include "text/LineInfo.h"
#include "text/LmTextObject.h"
#include "text/LmView.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <memory>

using namespace LmFontEffect;

namespace {

const char* const kFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
const wchar_t* const kText = L"The quick brown fox\njumps over the lazy\ndog, 0123456789.";
const int kLineStarts[] = {0, 20, 40};
const int kLineEnds[] = {19, 39, 56};

// A text object ready to render the paragraph at `size`: lines spaced by the font's height,
// a view wide enough for the longest line.
std::unique_ptr<LmTextObject> makeParagraph(float size, int* width, int* height)
{
    auto object = std::make_unique<LmTextObject>();
    object->Construct();
    object->SetText(kText);
    if (!object->SetFont(kFont)) return nullptr;
    LmPaint paint;
    paint.setTextSize(size);
    object->SetPaint(paint);

    std::shared_ptr<LmPlatformFont> font;
    LmString path;
    path.Construct(kFont);
    FontManager::GetInstance()->GetMinikinFont(font, &path, 0);
    const int ascent = font ? (int)std::ceil(-font->GetAscent(size)) : (int)size;
    const int descent = font ? (int)std::ceil(font->GetDescent(size)) : (int)(size / 4);
    *width = (int)(size * 12.0f);
    *height = 3 * (ascent + descent);
    object->GetView()->SetSize(*width, *height);

    List lines;
    lines.Construct();
    for (int i = 0; i < 3; i++) {
        auto* line = new LineInfo();
        line->x = 0;
        line->baseline = ascent + i * (ascent + descent);
        line->start = kLineStarts[i];
        line->end = kLineEnds[i];
        line->bounds = LmRect(0, line->baseline - ascent, *width, line->baseline + descent);
        lines.Add(line);
    }
    object->SetLineInfo(&lines);
    lines.RemoveAll();
    return object;
}

void renderParagraph(benchmark::State& state, bool background)
{
    const float size = (float)state.range(0);
    int width = 0, height = 0;
    std::unique_ptr<LmTextObject> object = makeParagraph(size, &width, &height);
    if (!object) {
        state.SkipWithError("font file missing");
        return;
    }
    // Line boxes in a translucent colour: the output is drawn, swapped and blended with the text.
    if (background) object->SetBackgroundColor(0x80F0E0D0u, true);
    for (auto _ : state) {
        benchmark::DoNotOptimize(object->RenderTextEffect(width, height));
    }
    state.SetLabel(std::to_string(width) + "x" + std::to_string(height));
}

void BM_RenderParagraph(benchmark::State& state) { renderParagraph(state, false); }

void BM_RenderParagraphOnBackground(benchmark::State& state) { renderParagraph(state, true); }

} // namespace

BENCHMARK(BM_RenderParagraph)->Arg(48)->Arg(160)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RenderParagraphOnBackground)->Arg(48)->Arg(160)->Unit(benchmark::kMillisecond);
