#include "effect/LmBevelProperty.h"
#include "effect/LmEmbossProperty.h"
#include "effect/LmInnerShadowProperty.h"
#include "effect/LmLinearGradientProperty.h"
#include "effect/LmOuterGlowProperty.h"
#include "effect/LmOuterShadowProperty.h"
#include "effect/LmPatternProperty.h"
#include "effect/LmStrokeProperty.h"
#include "effect/LmTextProperty.h"
#include "raster/LmBitmap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

using namespace LmFontEffect;

namespace {

std::string serial(const LmProperty& p)
{
    std::string out((size_t)p.getSequentialCharLength(), '\0');
    char* cursor = &out[0];
    EXPECT_EQ(1, p.toSequentialChar(&cursor));
    EXPECT_EQ(&out[0] + out.size(), cursor) << "length and written bytes differ";
    return out;
}

std::string hex(const std::string& bytes)
{
    std::string out;
    char digits[3];
    for (unsigned char b : bytes) std::snprintf(digits, sizeof digits, "%02x", b), out += digits;
    return out;
}

} // namespace

// The key bytes of every record kind, pinned here once. The values are ones the records clamp
// or wrap (angle 400 to 40, -30 to 330, depth 12 to 10, soften -1 to 0 and 99 to 16, altitude
// 100 to 10, scale 2.5 to 2 and NaN or -1 to 0, fields above 127 to their low 7 bits, no stops
// for a count of 0 or less or a missing array), and values nothing should survive (NaN, 1e30).
TEST(LmProperty, KeyBytesOfEveryKind)
{
    LmGradient stops[3] = {{0xFF0000FFu, 1.0f, 0.0f}, {0x80FF0000u, 0.5f, 0.5f}, {0xFF00FF00u, 1.0f, 1.0f}};
    const float nan = std::nanf("");
    const struct {
        std::string key, hex;
    } cases[] = {
        {serial(LmTextProperty(0xFF336699u, 1.0f)), "548f8f838386868989"},
        {serial(LmOuterShadowProperty(400, 5, 3, 0x80000000u, 0.5f)), "5380a885838880808080808080"},
        {serial(LmOuterShadowProperty(-30, 0, 0, 0, 1)), "5382ca80808080808080808080"},
        {serial(LmInnerShadowProperty(-30, 0, 0, 0, 1)), "4982ca80808080808080808080"},
        {serial(LmStrokeProperty(130, 0xFF000000u, 1, 3, 1)), "4b828f8f8080808080808381"},
        {serial(LmBevelProperty(1, 5, 12, 0, 0, -1, 1, 400, 100, 0xFF000000u, 1, 0xFFFFFFFFu, 1)),
         "4281808580838e8880808080a88a8f8f8080808080808f8f8f8f8f8f8f8f"},
        {serial(LmEmbossProperty(0, 0, -3, 0, 0, 99, 0, 0, 0, 0, 0, 0, 0)),
         "458080808080808080809080808080808080808080808080808080808080"},
        {serial(LmLinearGradientProperty(30, 2.5f, 1, 3, stops)),
         "4c809e8c888f8f808080808f8fe48088808f8f80808080b2b28f8f80808f8f8080e4e4"},
        {serial(LmLinearGradientProperty(0, nan, 1, -4, stops)), "4c80808080"},
        {serial(LmLinearGradientProperty(0, -1, 1, 0, nullptr)), "4c80808080"},
        {serial(LmOuterGlowProperty(5, 0, 1, 7, nullptr)), "47858080808080808080"},
        {serial(LmOuterGlowProperty(1e9f, 0u, 1, 1, stops)), "478080808080808080808f8f808080808f8fe480"},
        {serial(LmOuterShadowProperty(nan, 1e30f, -1e30f, 0xFFFFFFFFu, 1)), "538080ff808f8f8f8f8f8f8f8f"},
        {serial(LmStrokeProperty(nan, 0x41414141u, 1, -1, 0x41)), "4b808481848184818481ffc1"},
        {serial(LmBevelProperty(0x5A, 1e10f, nan, -7, 255, 3, 1, nan, -45, 0u, 0, 0x5A5A5A5Au, 1)),
         "42da8f8f80808080f9ff838080d38080808080808080858a858a858a858a"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(hex(c.key), c.hex);
        for (size_t i = 1; i < c.key.size(); ++i) EXPECT_TRUE((unsigned char)c.key[i] & 0x80) << c.hex << " byte " << i;
    }
    // The inner shadow keeps the negative remainder it writes as 330.
    EXPECT_EQ(-30.0f, LmInnerShadowProperty(-30, 0, 0, 0, 1).angle);
}

TEST(LmProperty, PatternIsIdentifiedByItsImage)
{
    LmBitmap a(2, 2, 4), b(2, 2, 4);
    const std::string s = serial(LmPatternProperty(&a, 12, 0.5f));
    EXPECT_EQ(s, serial(LmPatternProperty(&a, 12, 0.5f)));
    EXPECT_NE(s, serial(LmPatternProperty(&b, 12, 0.5f)));
    EXPECT_EQ(hex(s.substr(9)), "80838e8880808382"); // scale clamped to 10 (1000), opacity 50
    EXPECT_EQ(0.0f, LmPatternProperty(&a, -2, 1).scale);
}
