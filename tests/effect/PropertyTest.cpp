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
#include <limits>
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

std::string bytes(std::initializer_list<unsigned> b)
{
    std::string s;
    for (unsigned v : b) s.push_back((char)v);
    return s;
}

} // namespace

TEST(LmProperty, TextRecordIsTagAndColourWord)
{
    EXPECT_EQ("T" + bytes({0x8F, 0x8F, 0x83, 0x83, 0x86, 0x86, 0x89, 0x89}),
              serial(LmTextProperty(0xFF336699u, 1.0f)));
}

TEST(LmProperty, ShadowAnglesWrapIntoTheTwoByteEncoding)
{
    std::string s = serial(LmOuterShadowProperty(400, 5, 3, 0x80000000u, 0.5f));
    ASSERT_EQ(13u, s.size());
    EXPECT_EQ('S', s[0]);
    EXPECT_EQ(bytes({0x80, 0xA8}), s.substr(1, 2));
    EXPECT_EQ(bytes({0x85, 0x83}), s.substr(3, 2));
    EXPECT_EQ(bytes({0x88, 0x80}), s.substr(5, 2));
    EXPECT_EQ(bytes({0x82, 0xCA}), serial(LmOuterShadowProperty(-30, 0, 0, 0, 1)).substr(1, 2));

    // The inner shadow keeps a negative remainder but still writes 330.
    LmInnerShadowProperty inner(-30, 0, 0, 0, 1);
    EXPECT_EQ(-30.0f, inner.angle);
    std::string is = serial(inner);
    EXPECT_EQ('I', is[0]);
    EXPECT_EQ(bytes({0x82, 0xCA}), is.substr(1, 2));
    EXPECT_EQ(5.0f, LmInnerShadowProperty(725.9f, 0, 0, 0, 1).angle);
}

TEST(LmProperty, SevenBitFieldsWrapAbove127)
{
    std::string s = serial(LmStrokeProperty(130, 0xFF000000u, 1, 3, 1));
    ASSERT_EQ(12u, s.size());
    EXPECT_EQ('K', s[0]);
    EXPECT_EQ((char)(0x80 | 2), s[1]); // 130 & 0x7F
    EXPECT_EQ((char)0x83, s[10]);
    EXPECT_EQ((char)0x81, s[11]);
}

TEST(LmProperty, LightingRecordsClampAndAlwaysWriteThirtyBytes)
{
    LmBevelProperty b(1, 5, 12, 0, 0, -1, 1, 400, 100, 0xFF000000u, 1, 0xFFFFFFFFu, 1);
    EXPECT_EQ(10.0f, b.depth);
    EXPECT_EQ(0, b.soften);
    EXPECT_EQ(40.0f, b.angle);
    EXPECT_EQ(10.0f, b.altitude);
    EXPECT_EQ(0u, b.colour);
    std::string s = serial(b);
    ASSERT_EQ(30u, s.size());
    EXPECT_EQ('B', s[0]);
    EXPECT_EQ(bytes({0x80, 0x83, 0x8E, 0x88}), s.substr(4, 4)); // depth 1000 = 0x03E8
    EXPECT_EQ(16, LmEmbossProperty(0, 0, -3, 0, 0, 99, 0, 0, 0, 0, 0, 0, 0).soften);
    EXPECT_EQ(0.0f, LmEmbossProperty(0, 0, -3, 0, 0, 99, 0, 0, 0, 0, 0, 0, 0).depth);
    EXPECT_EQ('E', serial(LmEmbossProperty(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0))[0]);
}

TEST(LmProperty, GradientStopsAreTenBytesEach)
{
    LmGradient stops[3] = {{0xFF0000FFu, 1.0f, 0.0f}, {0x80FF0000u, 0.5f, 0.5f}, {0xFF00FF00u, 1.0f, 1.0f}};
    LmLinearGradientProperty g(30, 2.5f, 1, 3, stops);
    EXPECT_EQ(2.0f, g.scale);
    std::string s = serial(g);
    ASSERT_EQ(35u, s.size());
    EXPECT_EQ('L', s[0]);
    EXPECT_EQ(bytes({0x8C, 0x88}), s.substr(3, 2)); // 200
    // Second stop: word(colour), small(opacity 50), small(position 50).
    EXPECT_EQ(bytes({0x88, 0x80, 0x8F, 0x8F, 0x80, 0x80, 0x80, 0x80, 0x80 | 50, 0x80 | 50}), s.substr(15, 10));
    EXPECT_EQ(0.0f, LmLinearGradientProperty(0, -1, 1, 0, nullptr).scale);
    EXPECT_EQ(0.0f, LmLinearGradientProperty(0, std::nanf(""), 1, 0, nullptr).scale);

    // No stops written for a zero or negative count, or without an array.
    EXPECT_EQ(5u, serial(LmLinearGradientProperty(0, 1, 1, -4, stops)).size());
    EXPECT_EQ(10u, serial(LmOuterGlowProperty(5, 0, 1, 7, nullptr)).size());
    EXPECT_EQ(20u, serial(LmOuterGlowProperty(5, 0, 1, 1, stops)).size());
}

TEST(LmProperty, PatternIsIdentifiedByItsImage)
{
    LmBitmap a(2, 2, 4), b(2, 2, 4);
    LmPatternProperty pa(&a, 12, 0.5f);
    EXPECT_EQ(10.0f, pa.scale);
    EXPECT_EQ(0.0f, LmPatternProperty(&a, -2, 1).scale);
    std::string s = serial(pa);
    ASSERT_EQ(17u, s.size());
    EXPECT_EQ(s, serial(LmPatternProperty(&a, 12, 0.5f)));
    EXPECT_NE(s, serial(LmPatternProperty(&b, 12, 0.5f)));
    EXPECT_EQ(bytes({0x80, 0x83, 0x8E, 0x88}), s.substr(9, 4));  // scale 1000
    EXPECT_EQ(bytes({0x80, 0x80, 0x83, 0x82}), s.substr(13, 4)); // opacity 50
}

TEST(LmProperty, KeyBytesNeverZeroAndCapitalsOnlyAtTags)
{
    LmGradient stops[2] = {{0xFFFFFFFFu, 1.0f, 1.0f}, {0u, 0.0f, 0.0f}};
    const float bad = std::numeric_limits<float>::quiet_NaN();
    const LmProperty* records[] = {
        new LmTextProperty(0u, 0),
        new LmOuterShadowProperty(bad, 1e30f, -1e30f, 0xFFFFFFFFu, 1),
        new LmStrokeProperty(bad, 0x41414141u, 1, -1, 0x41),
        new LmOuterGlowProperty(1e9f, 0u, 1, 2, stops),
        new LmLinearGradientProperty(-1e20f, 2, 1, 2, stops),
        new LmBevelProperty(0x5A, 1e10f, bad, -7, 255, 3, 1, bad, -45, 0u, 0, 0x5A5A5A5Au, 1),
    };
    for (const LmProperty* p : records) {
        std::string s = serial(*p);
        EXPECT_TRUE(s[0] >= 'A' && s[0] <= 'Z');
        for (size_t i = 1; i < s.size(); ++i) EXPECT_TRUE((unsigned char)s[i] & 0x80) << s[0] << " byte " << i;
        delete p;
    }
}
