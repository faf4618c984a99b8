// The shadows and the blur they share: the outer shadow's shift and margins (its passes:
// goldens), the inner shadow's vectorised passes against the straightforward definition, and the
// blur's row passes against plain sums (the glows' spread passes: GlowSameBytes).
#include "filters/MaskFixtures.h"

#include "filters/LmGaussianBlur.h"

using namespace LmTest;

namespace {

// The inner shadow by its straightforward definition: the inverse blurred along rows (taps past
// the row are outside the glyph), then down the shifted columns with full inverse above and
// below, kept where the mask has coverage; full shadow where the shift reads only beyond the
// blur's reach, and the glyphs themselves when it never reaches.
std::vector<unsigned char> plainInnerShadow(const Mask& m, int dx, int dy, int R)
{
    const LmRect box = m.box();
    const int w = box.right - box.left, h = box.bottom - box.top, Wp = w + 2 * R;
    std::vector<unsigned char> out((size_t)m.width * m.height);
    auto b = [&](int x, int y) { return x < 0 || x >= w ? 0 : (int)m.at(box.left + x, box.top + y); };
    const bool reaches = w + R + dx >= 0 && dx - R < w && dy < h + R && h + dy >= -R;
    std::vector<int> wt((size_t)R + 1);
    int sum = 0;
    LmGaussianBlur::computeGaussianWeights(wt.data(), &sum, R);
    // c(x, y) over the padded row: x in 0..Wp-1 stands for mask column x - R.
    auto c = [&](int x, int y) {
        return (255 * sum - symmetricTaps(wt, [&](int i) { return b(x + i - R, y); })) / sum;
    };
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            int a;
            const int cx = R + x - dx, sy = y - dy;
            if (!reaches) a = b(x, y);
            else if (cx < 0 || cx >= Wp || sy + R < 0 || sy - R >= h) a = 255;
            else if (b(x, y) == 0) a = 0;
            else
                a = symmetricTaps(wt, [&](int i) { return sy + i < 0 || sy + i >= h ? 255 : c(cx, sy + i); }) / sum;
            out[(size_t)(box.top + y) * m.width + box.left + x] = (unsigned char)a;
        }
    return out;
}

} // namespace

TEST(OuterShadowLayer, ShiftAndSideMargins)
{
    const float kNaN = std::nanf("");
    // Halves round away from zero; far distances saturate; whole turns of the angle wrap (the
    // goldens pin the ordinary shifts and margins).
    const struct {
        float angle, distance, size;
        int shiftX, shiftY, left, right, top, bottom;
    } cases[] = {
        {180, 2.5f, 0, 3, 0, 0, 3, 0, 0},
        {0, 1e30f, 3, INT_MIN, 0, INT_MAX, 0, 3, 3},
        {360.0f * 1000 + 90, 5, 0, 0, 5, 0, 0, 0, 5},
        {kNaN, kNaN, kNaN, 0, 0, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        auto s = outerOf(c.angle, c.distance, c.size);
        EXPECT_EQ(std::vector<int>({s->getShiftX(), s->getShiftY(), s->getLeftOffset(), s->getRightOffset(),
                                    s->getTopOffset(), s->getBottomOffset()}),
                  std::vector<int>({c.shiftX, c.shiftY, c.left, c.right, c.top, c.bottom}))
            << c.angle << " " << c.distance << " " << c.size;
    }
    // With NaN everywhere the shadow is the mask itself: no shift and no blur.
    const Mask m = disc(20, 6);
    FilterRun nan(m);
    EXPECT_EQ(nan.run(*outerOf(kNaN, kNaN, kNaN)), 1);
    EXPECT_EQ(nan.alphaPlane(), m.pixels);
    // An inner-shadow record is read as a shadow record.
    EXPECT_EQ(layerWith<LmOuterShadow>(LmInnerShadowProperty(270, 4, 2, 0xFF000000, 0.5f))->getShiftY(), -4);
}

TEST(OuterShadowLayer, ShadowOutsideTheTargetIsSkipped)
{
    FilterRun run(rect(20, 20, 2, 2, 6, 6));
    EXPECT_EQ(run.run(*outerOf(0, 30, 3)), 0);  // right + 2R + shiftX < 0
    EXPECT_EQ(run.run(*outerOf(90, 40, 3)), 0); // top - 2R + shiftY >= height
    EXPECT_TRUE(run.untouched());
    EXPECT_EQ(run.run(*outerOf(0, 12, 3)), 1); // right + 2R + shiftX = 0 still reaches
}

TEST(InnerShadowBlur, SameBytesAsTheStraightforwardPasses)
{
    std::mt19937 rng(11);
    for (int round = 0; round < 60; ++round) {
        const unsigned W = 1 + rng() % 40, H = 1 + rng() % 30;
        Mask m{W, H, std::vector<unsigned char>((size_t)W * H)};
        const int kind = round % 3; // sparse partial bytes, mostly solid, solid blocks with edges
        for (auto& v : m.pixels)
            v = kind == 0 ? (rng() % 4 ? 0 : (unsigned char)rng()) : kind == 1 ? (rng() % 5 ? 255 : (unsigned char)rng())
                                                                                : (rng() % 2 ? 255 : 0);
        if (m.box().right <= m.box().left) continue;
        const float angle = (float)(rng() % 360), distance = (float)(rng() % 50), size = (float)(rng() % (round < 40 ? 12 : 60));
        int dx = 0, dy = 0;
        LmOuterShadow::computeShift(angle, distance, &dx, &dy);
        FilterRun run(m);
        run.run(*innerOf(angle, distance, size));
        ASSERT_EQ(run.alphaPlane(), plainInnerShadow(m, dx, dy, (int)(size + 0.5f)))
            << "round " << round << " angle " << angle << " distance " << distance << " size " << size;
    }
}

TEST(BlurRows, SameBytesAsPlainTaps)
{
    std::mt19937 rng(7);
    for (int R : {0, 1, 2, 3, 5, 8, 13, 30, 64, 100, 300})
        for (int round = 0; round < 5; ++round) {
            // Gaussian weights of both scales, then arbitrary ones, the last with quotients past 255.
            std::vector<int> w((size_t)R + 1);
            int sum = 0;
            if (round < 2) LmGaussianBlur::computeGaussianWeights(w.data(), &sum, R, round ? 128 : 100);
            for (int& v : w) v = round < 2 ? v : (int)(rng() % (round == 3 ? 3000 : 200));
            for (int i = 0; round >= 2 && i <= R; ++i) sum += (i ? 2 : 1) * w[i] + (i ? 0 : (int)(rng() % 50));
            if (round == 4) sum = std::max(1, sum / 2);
            const int W = 2 * R + 1 + (int)(rng() % 700), H = 2 * R + 1, y = R;
            std::vector<unsigned char> src((size_t)W * H), row(W), out(W);
            for (auto& b : src) b = rng() % 3 ? (unsigned char)(rng() % 256) : 255;
            LmGaussianBlur::verticalRow(src.data(), W, y, R, W - R, w.data(), sum, R, row.data());
            LmGaussianBlur::horizontalRow(src.data() + (size_t)y * W, R, W - R, w.data(), sum, R, out.data());
            for (int x = R; x < W - R; ++x) {
                const unsigned char* c = src.data() + (size_t)y * W + x;
                const int down = symmetricTaps(w, [&](int i) { return c[i * W]; });
                const int across = symmetricTaps(w, [&](int i) { return c[i]; });
                ASSERT_EQ(row[x], (unsigned char)(down / sum)) << R << " " << x;
                ASSERT_EQ(out[x], std::min(across / sum, 255)) << R << " " << x;
            }
        }
}
