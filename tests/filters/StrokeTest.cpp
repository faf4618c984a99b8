// The stroke: its kernel and margins, and the running-maxima workers against the
// windowed ones' bytes.
#include "filters/MaskFixtures.h"

using namespace LmTest;

namespace {

struct Kernel {
    unsigned char* bytes = nullptr;
    int k;
    explicit Kernel(float r) : k(makeCircleKernel(&bytes, r)) {}
    ~Kernel() { std::free(bytes); }
};

// Both workers of each position over the mask: the source inside a larger buffer, the rows split
// in two calls, the destination starting with random bytes.
void expectSameBytes(const Mask& m, float r, std::mt19937& rng)
{
    const Kernel kernel(r);
    const int k = kernel.k, n = k >> 1, W = (int)m.width, H = (int)m.height;
    const int sx = (int)(rng() % 3), sy = (int)(rng() % 3), stride = W + sx + 1;
    std::vector<unsigned char> src((size_t)stride * (H + sy), 7);
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) src[(size_t)(y + sy) * stride + x + sx] = m.at(x, y);
    const int dstStride = W + 2 * n + 2, dstHeight = H + 2 * n + 2, plane = dstStride * dstHeight;
    for (int position = 0; position < 3; ++position) {
        std::vector<unsigned char> expected((size_t)plane * 2);
        for (size_t i = 0; i < expected.size(); i += 4) expected[i] = (unsigned char)((i + rng() % 8) * 2654435761u >> 24);
        std::vector<unsigned char> actual = expected;
        const int split = (int)(rng() % (H + 1)), dx = n + (int)(rng() % 2), dy = n + (int)(rng() % 2);
        int (*const workers[2][3])(void*) = {{partalDTStrokeCenter, partalDTStrokeOutside, partalDTStrokeInside},
                                             {spanStrokeCenter, spanStrokeOutside, spanStrokeInside}};
        for (int part = 0; part < 4; ++part) {
            StrokeDTArgs a{part < 2 ? expected.data() : actual.data(), src.data(), kernel.bytes, stride, H + sy, sy, sx,
                           dstStride, dstHeight, dy, dx, plane, (int)r, k, W, H, part % 2 ? split : 0, part % 2 ? H : split};
            workers[part / 2][position](&a);
        }
        EXPECT_EQ(expected, actual) << W << "x" << H << " radius " << r << " position " << position;
    }
}

} // namespace

TEST(StrokeKernel, WorkedRadii)
{
    // Below radius 1 the centre carries the radius itself: a faint sub-pixel stroke (the stroke
    // goldens pin the kernels from radius 1 up).
    const struct {
        float r;
        int k, x, y, value;
    } cases[] = {{0.5f, 3, 1, 1, 128}, {0.5f, 3, 0, 1, 128}, {0.5f, 3, 0, 0, 22}, {0.0f, 1, 0, 0, 0},
                 {std::nanf(""), 1, 0, 0, 0}};
    for (const auto& c : cases) {
        Kernel kernel(c.r);
        ASSERT_EQ(kernel.k, c.k) << c.r;
        EXPECT_EQ(kernel.bytes[c.y * kernel.k + c.x], c.value) << c.r << " at " << c.x << "," << c.y;
    }
    EXPECT_EQ(Kernel(1e9f).bytes, nullptr);
}

// Offsets: halves round up (the goldens pin the centre and inside margins and the inside reach).
TEST(StrokeLayer, Offsets)
{
    EXPECT_EQ(std::vector<int>({strokeOf(1.5f, OUTSIDE)->getOffset(), strokeOf(7, 5)->getOffset(),
                                strokeOf(std::nanf(""), OUTSIDE)->getOffset()}),
              std::vector<int>({2, 0, 0}));
}

TEST(StrokeSpans, SameBytesAsTheWindows)
{
    std::mt19937 rng(12);
    const float spread[] = {0.3f, 1.49f, 2.5f, 3.7f, 12.5f, 30.0f};
    for (int kind = 0; kind < 7; ++kind) {
        // Every radius to 100 and random fractions on small masks, a spread on larger ones.
        for (int i = 0; i <= 136; ++i) {
            const bool small = i <= 130;
            const float r = i <= 100 ? (float)i : small ? (float)(rng() % 3000) / 100 : spread[i - 131];
            expectSameBytes(randomMask(kind, small ? 1 + rng() % 4 : 20 + rng() % 40, small ? 1 + rng() % 3 : 10 + rng() % 30, rng), r, rng);
        }
    }
    expectSameBytes(randomMask(4, 3, 2, rng), (float)LmStroke::kMaxRadius, rng);
    // A kernel rising away from its centre cannot be cut into spans: the windows draw it.
    unsigned char kernel[9] = {0, 9, 0, 200, 100, 200, 0, 9, 0}, src[9] = {0, 0, 0, 0, 180, 90, 0, 0, 0};
    std::vector<unsigned char> expected(50), actual(50);
    StrokeDTArgs a{expected.data(), src, kernel, 3, 3, 0, 0, 5, 5, 1, 1, 25, 1, 3, 3, 3, 0, 3};
    partalDTStrokeCenter(&a);
    a.dst = actual.data();
    spanStrokeCenter(&a);
    EXPECT_EQ(expected, actual);
}
