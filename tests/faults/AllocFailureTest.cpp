#include "text/TextTestSupport.h"

#include "effect/LmEffect.h"
#include "foundation/Error.h"
#include "text/LmView.h"

#include <cstdlib>
#include <new>

// The program's allocator: armed, it fails the Nth operator new from then on (one failure,
// later ones succeed), so a sweep reaches every allocation site of a render.
namespace {
long gCountdown = -1; // allocations left before the failing one; -1 when disarmed
bool gFailed = false;

void* allocate(std::size_t size)
{
    if (gCountdown >= 0 && gCountdown-- == 0) {
        gFailed = true;
        return nullptr;
    }
    return std::malloc(size ? size : 1);
}

void* allocateOrThrow(std::size_t size)
{
    void* p = allocate(size);
    if (!p) throw std::bad_alloc();
    return p;
}
} // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

using namespace LmFontEffect;
using namespace LmTest;

namespace {

struct Outcome {
    bool failedCall = false;  // a call returned its failure value
    bool wrongCode = false;   // the first one without error code 1
    const char* escaped = nullptr; // the call an exception came out of
    const char* failedStep = "";
    const char* failedIn = ""; // the call the failing allocation came from
    std::vector<uint32_t> pixels;
};

// The calls of one full render, from a new text object to its pixels, with fallback fonts and
// an effect. Each call that fails must say so with error code 1.
Outcome fullRender(long failAt)
{
    Outcome out;
    const char* step = "";
    auto check = [&](bool ok) {
        if (gFailed && !*out.failedIn) out.failedIn = step;
        // The first refusal says why; later calls may refuse for its sake (code 8).
        if (ok || out.failedCall) return;
        out.failedCall = true;
        out.wrongCode = Error::GetError() != 1;
        out.failedStep = step;
    };
    // The caller's own records are made before the allocator is armed.
    LineInfo* line = newLine(2, 30, 0, 5);
    List list;
    if (!list.Construct() || !list.Add(line)) return out;
    Error::SetError(0);
    gFailed = false;
    gCountdown = failAt;
    try {
        LmTextObject object;
        step = "object.Construct";
        check(object.Construct() == 1);
        step = "object.SetText";
        check(object.SetText(L"Hi \u4E2D\u6587") == 1);
        step = "object.SetFont";
        check(object.SetFont(kSansPath) == 1);
        LmPaint paint = paintOf(24.0f);
        step = "object.SetPaint";
        object.SetPaint(paint);
        step = "object.SetTextColor";
        object.SetTextColor(0xFF204080u);
        step = "object.GetEffect";
        check(object.GetEffect() && object.GetEffect()->addOuterShadowText(45.0f, 3.0f, 2.0f, 0xFF000000u, 0.5f) >= 0);
        step = "object.SetLineInfo";
        bool taken = object.SetLineInfo(&list) == 1;
        check(taken);
        if (!taken) delete line;
        if (object.GetView()) check(object.GetView()->SetSize(120, 40) == 1);
        LmEffect* effect = object.GetEffect();
        int w = 120 + (effect ? effect->getLeftOffset() + effect->getRightOffset() : 0);
        int h = 40 + (effect ? effect->getTopOffset() + effect->getBottomOffset() : 0);
        step = "object.RenderTextEffect";
        const uint32_t* px = object.RenderTextEffect(w, h);
        check(px != nullptr);
        long left = gCountdown; // the copy is the test's, not the library's
        gCountdown = -1;
        if (px) out.pixels.assign(px, px + (size_t)w * h);
        gCountdown = left;
    } catch (...) {
        out.escaped = step;
    }
    gCountdown = -1;
    return out;
}

} // namespace

// Every allocation of a render fails in turn: no abort, no exception out of the library, and
// either a call refuses with error code 1 or the pixels are the same as without the failure.
TEST(AllocFailure, EveryAllocationOfAFullRenderFailsCleanly)
{
    freshFontManager(true);
    const Outcome good = fullRender(-1);
    ASSERT_FALSE(good.failedCall);
    ASSERT_FALSE(good.pixels.empty());
    int sites = 0;
    for (long n = 0;; ++n) {
        freshFontManager(true);
        Outcome o = fullRender(n);
        if (!gFailed) break;  // past the last allocation of the render
        ++sites;
        EXPECT_FALSE(o.wrongCode) << "allocation " << n << " " << o.failedStep;
        EXPECT_EQ(nullptr, o.escaped) << "allocation " << n << " " << o.escaped;
        if (!o.failedCall) {
            EXPECT_EQ(good.pixels, o.pixels) << "allocation " << n << " in " << o.failedIn;
        }
    }
    EXPECT_GT(sites, 50);
    freshFontManager(false);
}
