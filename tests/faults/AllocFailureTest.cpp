#include "text/TextTestSupport.h"

#include "foundation/Error.h"

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
    int refusedWithCode = -1;  // error code of the first call that returned its failure value
    bool escaped = false;      // an exception came out of the library
    std::vector<uint32_t> pixels;
};

// The calls of one full render, from a new text object to its pixels, with fallback fonts and
// an effect; the caller's own records are made before the allocator is armed.
Outcome fullRender(long failAt)
{
    Outcome out;
    auto check = [&](bool ok) {
        // Later calls may refuse for the first refusal's sake (code 8).
        if (!ok && out.refusedWithCode < 0) out.refusedWithCode = (int)Error::GetError();
    };
    LineInfo* line = newLine(2, 30, 0, 5);
    List list;
    if (!list.Construct() || !list.Add(line)) return out;
    gFailed = false;
    gCountdown = failAt;
    try {
        LmTextObject object;
        check(object.Construct() == 1);
        check(object.SetText(L"Hi \u4E2D\u6587") == 1);
        check(object.SetFont(kSansPath) == 1);
        LmPaint paint = paintOf(24.0f);
        object.SetPaint(paint);
        LmEffect* effect = object.GetEffect();
        check(effect && effect->addOuterShadowText(45.0f, 3.0f, 2.0f, 0xFF000000u, 0.5f) >= 0);
        bool taken = object.SetLineInfo(&list) == 1;
        check(taken);
        if (!taken) delete line;
        check(object.GetView() && object.GetView()->SetSize(120, 40) == 1);
        int w = 120 + (effect ? effect->getLeftOffset() + effect->getRightOffset() : 0);
        int h = 40 + (effect ? effect->getTopOffset() + effect->getBottomOffset() : 0);
        const uint32_t* px = object.RenderTextEffect(w, h);
        check(px != nullptr);
        long left = gCountdown; // the copy is the test's, not the library's
        gCountdown = -1;
        if (px) out.pixels.assign(px, px + (size_t)w * h);
        gCountdown = left;
    } catch (...) {
        out.escaped = true;
    }
    gCountdown = -1;
    return out;
}

} // namespace

// Every allocation of a render fails in turn: no abort, no exception out of the library, and
// either a call refuses with error code 1 or the pixels are those of a render without failure.
TEST(AllocFailure, EveryAllocationOfAFullRenderFailsCleanly)
{
    freshFontManager(true);
    const Outcome good = fullRender(-1);
    ASSERT_EQ(-1, good.refusedWithCode);
    ASSERT_FALSE(good.pixels.empty());
    long n = 0;
    for (;; ++n) {
        freshFontManager(true);
        Outcome o = fullRender(n);
        if (!gFailed) break; // past the last allocation of the render
        EXPECT_FALSE(o.escaped) << "allocation " << n;
        if (o.refusedWithCode >= 0) {
            EXPECT_EQ(1, o.refusedWithCode) << "allocation " << n;
        } else {
            EXPECT_EQ(good.pixels, o.pixels) << "allocation " << n;
        }
    }
    EXPECT_GT(n, 50);
    freshFontManager(false);
}
