#include "platform/LmCanvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace LmFontEffect;

namespace {

struct Raster {
    Raster(int w, int h) : w(w), h(h), px((size_t)w * h * 4, 0), canvas(px.data(), w, h) {}
    const unsigned char* at(int x, int y) const { return &px[((size_t)y * w + x) * 4]; }
    bool transparent(int x, int y) const { return at(x, y)[3] == 0; }
    int w, h;
    std::vector<unsigned char> px;
    LmCanvas canvas;
};

} // namespace

TEST(PlatformCanvas, ClearAndOpaqueRectangleFill)
{
    Raster r(8, 6);
    std::fill(r.px.begin(), r.px.end(), 0x5A);
    r.canvas.clear();
    for (unsigned char b : r.px) EXPECT_EQ(0, b);

    r.canvas.drawRect(1.0f, 2.0f, 4.0f, 5.0f, 0xFF102030u);
    const unsigned char* p = r.at(1, 2);
    EXPECT_EQ(0x10, p[0]);  // R, G, B, A in memory
    EXPECT_EQ(0x20, p[1]);
    EXPECT_EQ(0x30, p[2]);
    EXPECT_EQ(0xFF, p[3]);
    EXPECT_FALSE(r.transparent(3, 4));
    EXPECT_TRUE(r.transparent(4, 4));  // right and bottom are exclusive
    EXPECT_TRUE(r.transparent(3, 5));
    EXPECT_TRUE(r.transparent(0, 2));

    // Fractional edges take the pixels whose centres lie inside.
    Raster f(8, 1);
    f.canvas.drawRect(1.4f, 0.0f, 3.6f, 1.0f, 0xFFFFFFFFu);
    EXPECT_TRUE(f.transparent(0, 0));
    EXPECT_FALSE(f.transparent(1, 0));
    EXPECT_FALSE(f.transparent(3, 0));
    EXPECT_TRUE(f.transparent(4, 0));
}

TEST(PlatformCanvas, SourceOverOfUnpremultipliedColours)
{
    Raster r(1, 1);
    r.canvas.drawRect(0, 0, 1, 1, 0xFF0000FFu);  // opaque blue
    r.canvas.drawRect(0, 0, 1, 1, 0x80FF0000u);  // half red over it
    const unsigned char* p = r.at(0, 0);
    // a = 128/255: red = 255a, blue = 255(1 - a); alpha stays opaque.
    EXPECT_EQ(128, p[0]);
    EXPECT_EQ(0, p[1]);
    EXPECT_EQ(127, p[2]);
    EXPECT_EQ(255, p[3]);

    // Over transparent, the colour is kept as it is with its own alpha.
    Raster t(1, 1);
    t.canvas.drawRect(0, 0, 1, 1, 0x40336699u);
    EXPECT_EQ(0x33, t.at(0, 0)[0]);
    EXPECT_EQ(0x99, t.at(0, 0)[2]);
    EXPECT_EQ(0x40, t.at(0, 0)[3]);
    // Half over half: alpha 0.5 + 0.5 * 0.5.
    t.canvas.drawRect(0, 0, 1, 1, 0x40336699u);
    EXPECT_EQ(0x33, t.at(0, 0)[0]);
    EXPECT_EQ(112, t.at(0, 0)[3]);  // 64 + 64 * 191 / 255 = 111.9
    // Fully transparent paint changes nothing.
    t.canvas.drawRect(0, 0, 1, 1, 0x00FFFFFFu);
    EXPECT_EQ(0x33, t.at(0, 0)[0]);
}

TEST(PlatformCanvas, ClipIntersectsAndLimitsEveryDraw)
{
    Raster r(10, 10);
    r.canvas.clipRect(2.0f, 3.0f, 8.0f, 9.0f);
    r.canvas.clipRect(0.0f, 0.0f, 6.0f, 100.0f);
    int l, t, rr, b;
    r.canvas.getClip(&l, &t, &rr, &b);
    EXPECT_EQ(2, l);
    EXPECT_EQ(3, t);
    EXPECT_EQ(6, rr);
    EXPECT_EQ(9, b);
    r.canvas.drawRect(-100.0f, -100.0f, 100.0f, 100.0f, 0xFFFFFFFFu);
    int painted = 0;
    for (int y = 0; y < 10; y++)
        for (int x = 0; x < 10; x++) painted += !r.transparent(x, y);
    EXPECT_EQ(4 * 6, painted);
    EXPECT_FALSE(r.transparent(2, 3));
    EXPECT_FALSE(r.transparent(5, 8));

    // A NaN edge empties the clip; huge edges saturate.
    Raster n(4, 4);
    n.canvas.clipRect(std::numeric_limits<float>::quiet_NaN(), 0, 4, 4);
    n.canvas.drawRect(0, 0, 4, 4, 0xFFFFFFFFu);
    for (unsigned char c : n.px) EXPECT_EQ(0, c);
    Raster h(4, 4);
    h.canvas.clipRect(-1e30f, -1e30f, 1e30f, 1e30f);
    h.canvas.drawRect(-1e30f, 0, std::numeric_limits<float>::infinity(), 1, 0xFFFFFFFFu);
    h.canvas.drawRect(0, 0, std::numeric_limits<float>::quiet_NaN(), 4, 0xFFFFFFFFu);
    EXPECT_FALSE(h.transparent(0, 0));
    EXPECT_FALSE(h.transparent(3, 0));
    EXPECT_TRUE(h.transparent(0, 1));
}

TEST(PlatformCanvas, ImageDrawAtIntegerOffsetsClipped)
{
    std::vector<unsigned char> img(3 * 2 * 4, 0);
    for (int i = 0; i < 6; i++) {
        img[i * 4 + 0] = (unsigned char)(10 * (i + 1));
        img[i * 4 + 3] = 255;
    }
    Raster r(4, 4);
    r.canvas.drawImage(img.data(), 3, 2, 2, 3);  // hangs off the right and bottom edges
    EXPECT_EQ(10, r.at(2, 3)[0]);
    EXPECT_EQ(20, r.at(3, 3)[0]);
    EXPECT_TRUE(r.transparent(1, 3));
    r.canvas.drawImage(img.data(), 3, 2, -2, -1);  // and off the left and top
    EXPECT_EQ(60, r.at(0, 0)[0]);
    EXPECT_TRUE(r.transparent(1, 0));
    // Degenerate images and far offsets draw nothing.
    Raster e(4, 4);
    e.canvas.drawImage(nullptr, 3, 2, 0, 0);
    e.canvas.drawImage(img.data(), -3, 2, 0, 0);
    e.canvas.drawImage(img.data(), 3, 2, 2147483647, 0);
    e.canvas.drawImage(img.data(), 3, 2, -2147483647 - 1, 0);
    for (unsigned char c : e.px) EXPECT_EQ(0, c);
    LmCanvas none(nullptr, 5, 5);
    none.clear();
    none.drawRect(0, 0, 5, 5, 0xFFFFFFFFu);
    EXPECT_EQ(0, none.width());
}
