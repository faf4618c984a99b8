// Bevel and emboss: the worked numbers of the shared machinery, the layers' margins, what bad
// input must not do, and the fast passes against the plain definitions: the searches visit every
// cell's whole window in raster order, the exact fill decides each pixel alone, the transform
// runs the line transform on every line.
#include "filters/MaskFixtures.h"

#include "filters/LmMaskBox.h"
#include "filters/LmRelief.h"
#include "raster/LmSqrt.h"

#include <cmath>
#include <limits>

using namespace LmTest;

namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();

// Coverage kinds: empty, full, partial only, one pixel, anti-aliased strokes, blobs.
int coverage(int kind, int x, int y, int i, int dot, int any)
{
    const int kinds[6] = {0, 255, 1 + any % 254, i == dot ? 255 : 0, (x / 3 + y / 5) % 4 == 0 ? 255 : (x + y) % 4 ? 0 : any,
                          any % 3 ? any : 0};
    return kinds[kind];
}

bool sameBits(const std::vector<float>& a, const std::vector<float>& b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

} // namespace

// The bevel's own blur call leaves its border as the destination held it (the weights inside and
// the mirrored light of direction 0 are pinned by the relief goldens), and the light floors the
// depth.
TEST(Relief, BlurBorderAndLightFloor)
{
    std::vector<unsigned char> src(7 * 7, 0), dst(7 * 7, 9);
    src[3 * 7 + 3] = 255;
    LmBevel::blur(src.data(), dst.data(), 1, 7, 7);
    EXPECT_EQ(std::vector<int>({dst[0], dst[3 * 7 + 3], dst[6 * 7 + 6]}), std::vector<int>({9, 245, 9}));
    const LmBevelProperty flat = reliefRecord(1, 5, 0, 0, 0);
    EXPECT_EQ(LmRelief::light(flat, 0.1f).nz, 2.4f / 0.1f);
    EXPECT_EQ(LmRelief::light(flat, 0.2f).nz, 2.4f / 0.2f);
}

TEST(Relief, OffsetsAreTheWidthPlusSoftenSaturated)
{
    const struct {
        float size;
        int soften, bevel, emboss;
    } cases[] = {{5.5f, 3, 9, 7}, {10, 2, 12, 8}, {9, 0, 9, 6}, {0, 0, 0, 1}, {kNaN, 4, 4, 4}, {1e30f, 16, INT_MAX, INT_MAX}};
    for (const auto& c : cases) {
        EXPECT_EQ(layerWith<LmBevel>(reliefRecord(1, c.size, 0, c.soften))->getOffset(), c.bevel) << c.size;
        EXPECT_EQ(layerWith<LmEmboss>(reliefRecord(0, c.size, 0, c.soften))->getOffset(), c.emboss) << c.size;
    }
}

// The all-filters bad-input table gives the relief layers a sane depth and light; here those are
// NaN or far out of range, for every style and technique, and must run inside the buffers.
TEST(Relief, LightingOutOfRangeRunsInsideTheBuffers)
{
    for (float bad : {kNaN, 1e9f, -1e9f})
        for (int style : {0, 1, 3})
            for (int technique : {0, 1}) {
                const LmBevelProperty b = reliefRecord(style, 4, technique, 99, bad, bad, 1, bad);
                FilterRun(disc(16, 5)).run(*layerWith<LmBevel>(b));
                FilterRun(disc(16, 5)).run(*layerWith<LmEmboss>(b));
            }
}

TEST(ReliefSameBytes, EmbossSearchesMatchTheFullWindow)
{
    // Masks inside a frame of empty cells that may be narrower than the reach, then values no
    // fill makes (the inner search may lift a cell into a source for the cells after it).
    const float odd[] = {0.0f, -0.0f, 1.0f, 0.5f, -3.0f, 40.0f, INFINITY, -INFINITY, NAN};
    std::mt19937 rng(5);
    for (int round = 0; round < 500; ++round) {
        const bool large = round % 10 == 9;
        const int w = 1 + (int)(rng() % (large ? 200 : 24)), h = 1 + (int)(rng() % (large ? 80 : 24));
        const int reach = 1 + (int)(rng() % (large ? 30 : 12)), inner = 1 + (int)(rng() % (large ? 28 : 12));
        const int kind = round % 7, frame = (int)(rng() % 4), dot = (int)(rng() % (w * h));
        std::vector<float> fast((size_t)w * h);
        for (int i = 0; i < w * h; ++i) {
            const int x = i % w, y = i / w, any = (int)(rng() % 256);
            const bool boxed = kind < 6 && x >= frame && y >= frame && x < w - frame && y < h - frame;
            const float v = (float)(boxed ? coverage(kind, x, y, i, dot, any) : 0) / 254.999f;
            fast[i] = kind == 6 ? (any % 4 ? (float)(any - 128) / 10.0f : odd[any % 9]) : v < 0.001f ? (float)reach : v < 1.0f ? 1.0f - v : 1.0f - (float)inner;
        }
        std::vector<float> plain = fast;
        LmRelief::SearchArgs args{fast.data(), h, w, reach, inner, 0, h};
        for (bool outer : {true, false}) {
            // Outer: cells above 0 take the least (n > 0 ? n + d : d) over n < 1; inner: cells below
            // 0 the largest n - d over n > 1.
            const int r = outer ? reach : inner;
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    float& c = plain[(size_t)y * w + x];
                    if (outer ? !(c > 0.0f) : !(c < 0.0f)) continue;
                    for (int yy = std::max(y - r, 0); yy < std::min(y + r + 1, h); ++yy)
                        for (int xx = std::max(x - r, 0); xx < std::min(x + r + 1, w); ++xx) {
                            const float n = plain[(size_t)yy * w + xx], d = LmRelief::rootOf((yy - y) * (yy - y) + (xx - x) * (xx - x));
                            const float k = outer ? (n > 0.0f ? n + d : d) : n - d;
                            if (outer ? n < 1.0f && k < c : n > 1.0f && k > c) c = k;
                        }
                }
            outer ? LmRelief::partialOutDT(&args) : LmRelief::partialInDT(&args);
            ASSERT_TRUE(sameBits(plain, fast)) << (outer ? "outer" : "inner") << " search, round " << round;
        }
    }
    // The searches stop where the root reaches the value they hold, table and sqrtf alike, and the
    // outer one bounds that point assuming roots within 0.0005 (and a float's rounding) of sqrt.
    for (int64_t n = 0; n < 3 * LM_INT_SQRT_TABLE_SIZE; ++n) {
        ASSERT_LE(LmRelief::rootOf(n), LmRelief::rootOf(n + 1)) << n;
        ASSERT_NEAR(LmRelief::rootOf(n), std::sqrt((double)n), 0.0005 + 1e-7 * std::sqrt((double)n)) << n;
    }
}

TEST(ReliefSameBytes, ExactFillAndTransformMatchThePlainOnes)
{
    std::mt19937 rng(3);
    for (int round = 0; round < 300; ++round) {
        LmBitmap mask(1 + rng() % 30, 1 + rng() % 30, 1);
        const int mw = (int)mask.width, mh = (int)mask.height, dot = (int)(rng() % (mw * mh));
        for (int i = 0; i < mw * mh; ++i) mask.pixels[i] = (unsigned char)coverage(round % 6, i % mw, i / mw, i, dot, (int)(rng() % 256));
        // Boxes that may touch the mask's edges.
        LmMaskBox box;
        box.mask = &mask;
        box.left = (int)(rng() % mw), box.top = (int)(rng() % mh);
        box.right = box.left + 1 + (int)(rng() % (mw - box.left)), box.bottom = box.top + 1 + (int)(rng() % (mh - box.top));
        LmRelief::Canvas c;
        ASSERT_TRUE(LmRelief::canvasFor(box, rng() % 6, &c));
        const float on = round % 2 ? 0.0f : 1e20f, off = round % 2 ? 1e20f : 0.0f;
        // Rows and columns from the margin through size - margin are interior; reads off the mask are 0.
        std::vector<float> plain((size_t)c.pixels()), fast(plain.size());
        for (int r = 0, m = c.margin; r < c.height; ++r)
            for (int col = 0; col < c.width; ++col) {
                const int y = box.top + r - m, x = box.left + col - m;
                const bool interior = r >= m && r <= c.height - m && col >= m && col <= c.width - m;
                plain[(size_t)r * c.width + col] = interior && y < mh && x < mw && mask.pixels[y * mw + x] ? on : off;
            }
        LmRelief::exactFill(fast.data(), c, box, on, off);
        ASSERT_TRUE(sameBits(plain, fast)) << "fill, round " << round;
        // Every column, then every row; rows left out past the cap come out capped all the same.
        std::vector<float> line(std::max(c.width, c.height)), out(line.size());
        for (int pass = 0; pass < 2; ++pass)
            for (int i = 0, n = pass ? c.width : c.height; i < (pass ? c.height : c.width); ++i) {
                const size_t step = pass ? 1 : (size_t)c.width, at = pass ? (size_t)i * c.width : (size_t)i;
                for (int j = 0; j < n; ++j) line[j] = plain[at + j * step];
                LmRelief::dt1D(out.data(), line.data(), n);
                for (int j = 0; j < n; ++j) plain[at + j * step] = out[j];
            }
        const int reach = 1 + (int)(rng() % 6);
        ASSERT_TRUE(LmRelief::dt2D(fast.data(), c.width, c.height, round % 3 ? (float)(reach * reach) : INFINITY));
        if (round % 3) LmRelief::capDistances(plain.data(), c.pixels(), reach), LmRelief::capDistances(fast.data(), c.pixels(), reach);
        ASSERT_TRUE(sameBits(plain, fast)) << "transform, round " << round;
    }
    // Lines of one fill value keep themselves, up to the 4096 the transform passes over.
    for (float value : {0.0f, 1e20f}) {
        std::vector<float> in(4096, value), out(4096);
        for (int n = 1; n <= 4096; n += n < 300 ? 1 : 97) {
            LmRelief::dt1D(out.data(), in.data(), n);
            ASSERT_TRUE(std::equal(in.begin(), in.begin() + n, out.begin())) << value << " x " << n;
        }
    }
}

// The composing tables against the pixel rule: every pair of sides, in an order that changes
// pair at every pixel, for the gains in use and ones past the tables.
TEST(ReliefSameBytes, ComposeAllMatchesThePixelRule)
{
    std::vector<unsigned char> lit(65536), shadow(65536);
    for (int i = 0; i < 65536; ++i) lit[i] = (unsigned char)i, shadow[i] = (unsigned char)(i >> 8);
    std::vector<unsigned> out(65536);
    for (float gain : {1.0f, 1.83f, 2.03f, 0.3f, -1.5f, 64.0f, 100.0f}) {
        LmRelief::composeAll(lit.data(), shadow.data(), out.data(), 65536, gain, 0x80102030u, 0xFFE0D0C0u);
        for (int i = 0; i < 65536; ++i)
            ASSERT_EQ(out[i], LmRelief::composePixel(lit[i], shadow[i], gain, 0x80102030u, 0xFFE0D0C0u)) << gain << " " << i;
    }
}
