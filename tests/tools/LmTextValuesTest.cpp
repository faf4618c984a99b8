// How lmtext reads the values users type: colour forms, stops, padding, gravity, escapes,
// and the notes it gives for values the library will change.
#include "ToolRunner.h"

#include <gtest/gtest.h>

using LmTest::kToolFont;
using Png = LmTextTool::RgbaImage;
using LmTest::runTool;
using LmTest::ToolRun;

namespace {

const std::string kDir = LmTest::scratchDir();

ToolRun keyOf(std::vector<std::string> extra)
{
    std::vector<std::string> args = {"render", "-t", "Hi", "-f", kToolFont, "--key"};
    args.insert(args.end(), extra.begin(), extra.end());
    return runTool(args);
}

TEST(LmTextValues, ColourFormsMeanTheSameColour)
{
    // The key ends with the text layer, which holds the text colour.
    const std::string red = keyOf({"-c", "#FFFF0000"}).out;
    EXPECT_NE(red, keyOf({"-c", "#FFFF0001"}).out);
    for (const char* form : {"#F00", "#ff0000", "0xff0000", "red", "RED"}) {
        ToolRun r = keyOf({"-c", form});
        ASSERT_EQ(r.exitCode, 0) << form << ": " << r.err;
        EXPECT_EQ(r.out, red) << form;
    }
    EXPECT_EQ(keyOf({"-c", "orange"}).out, keyOf({"-c", "#FFA500"}).out);
}

// The key holds the text colour without its alpha: the render shows that the alpha arrived.
TEST(LmTextValues, TextAlphaIsTheOverallAlpha)
{
    ToolRun r = runTool({"render", "-t", "Hi", "-f", kToolFont, "-c", "#80000000", "--stroke", "size=2,color=#FF0000",
                         "-o", kDir + "half.png"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    Png png = Png::readPng(kDir + "half.png");
    unsigned maxAlpha = 0;
    for (size_t i = 3; i < png.bytes().size(); i += 4) maxAlpha = std::max<unsigned>(maxAlpha, png.bytes()[i]);
    EXPECT_GE(maxAlpha, 120u);
    EXPECT_LE(maxAlpha, 129u);
}

TEST(LmTextValues, ValuesTheLibraryChangesAreNoted)
{
    LmTest::writeText(kDir + "stops.json", R"({"text": "Hi", "effects": [
        {"type": "linear-gradient", "angle": 45,
         "stops": [{"color": "#FF0000", "position": 0}, {"color": "#0000FF", "position": 2, "opacity": 0.5}]}]})");
    const struct {
        std::vector<std::string> args;
        std::vector<std::string> notes;
        std::string absent;  // no note for values in range
    } cases[] = {
        {{"--stroke", "color=#80FF0000"},
         {"--stroke: color=#80FF0000: its alpha is ignored; the effect's opacity sets it"}, ""},
        {{"--outer-glow", "stops=#F00@1.5:2+#00F@-0.2+#0F0@0.555"},
         {"--outer-glow: stops[1] position=1.5 is outside 0..1; clamped to 1",
          "--outer-glow: stops[1] opacity=2 is outside 0..1; clamped to 1",
          "--outer-glow: stops[2] position=-0.2 is outside 0..1; clamped to 0",
          "--outer-glow: stops[3] position=0.555 is truncated to 0.55"},
         "stops[1] colour"},
        {{"--bevel", "soften=20,depth=-1,altitude=100,opacity=0.5,technique=chisel,direction=down"},
         {"--bevel: soften=20 is outside 0..16; clamped to 16", "--bevel: depth=-1 is outside 0..10; clamped to 0",
          "--bevel: altitude=100 wraps to 10 (range 0..89)"},
         "opacity=0.5"},
        {{"--linear-gradient", "scale=3", "--pattern", "scale=12"},
         {"--linear-gradient: scale=3 is outside 0..2; clamped to 2",
          "--pattern: scale=12 is outside 0..10; clamped to 10"},
         ""},
        {{"--stroke", "size=250,opacity=3", "--outer-shadow", "angle=-30,distance=4.7"},
         {"--stroke: size=250 is outside 0..100; clamped to 100", "--stroke: opacity=3 is outside 0..1; clamped to 1",
          "--outer-shadow: angle=-30 wraps to 330", "--outer-shadow: distance=4.7 is truncated to 4"},
         ""},
        // Scenes take stops as lists.
        {{kDir + "stops.json"}, {"effects[0] (linear-gradient): stops[2] position=2 is outside 0..1; clamped to 1"}, ""},
    };
    for (const auto& c : cases) {
        ToolRun r = keyOf(c.args);
        for (const std::string& note : c.notes) EXPECT_NE(r.err.find(note), std::string::npos) << r.err;
        if (!c.absent.empty()) {
            EXPECT_EQ(r.err.find(c.absent), std::string::npos) << r.err;
        }
    }
}

// Passing the clamped values gives the same stack: same key, same pixels, and no notes.
TEST(LmTextValues, ClampedValuesRenderAsTheLibraryClampsThem)
{
    ToolRun clamped = keyOf({"--stroke", "size=250,opacity=3", "--outer-shadow", "angle=-30,distance=4.7", "-o",
                             kDir + "clamped.png"});
    ToolRun plain = keyOf({"--stroke", "size=100,opacity=1", "--outer-shadow", "angle=330,distance=4", "-o",
                           kDir + "plain.png"});
    EXPECT_EQ(plain.exitCode, 0) << plain.err;
    EXPECT_EQ(plain.err.find("lmtext:"), std::string::npos) << plain.err;
    ASSERT_FALSE(plain.out.empty());
    EXPECT_EQ(clamped.out.substr(0, clamped.out.find('\n')), plain.out.substr(0, plain.out.find('\n')));
    EXPECT_TRUE(Png::readPng(kDir + "clamped.png").bytes() == Png::readPng(kDir + "plain.png").bytes());
}

TEST(LmTextValues, PaddingGravityAndEscapes)
{
    auto size = [](std::vector<std::string> extra, const std::string& name) {
        extra.insert(extra.begin(), {"-t", "Hi"}); // a later -t wins
        const Png png = LmTest::renderTo(kDir + name, extra);
        return std::make_pair(png.width(), png.height());
    };
    auto bare = size({}, "bare.png");
    auto two = size({"-p", "5,10"}, "pad2.png");
    auto four = size({"-p", "1,2,3,4"}, "pad4.png");
    EXPECT_EQ(two.first, bare.first + 10);
    EXPECT_EQ(two.second, bare.second + 20);
    EXPECT_EQ(four.first, bare.first + 4);
    EXPECT_EQ(four.second, bare.second + 6);

    EXPECT_EQ(keyOf({"-g", "0x55"}).exitCode, 0);
    EXPECT_EQ(keyOf({"-g", "bottom"}).exitCode, 0);

    // "\n" typed on the command line starts a line; "\\n" keeps a backslash and an n.
    auto lines = size({"-t", "A\\nA"}, "escaped.png");
    auto literal = size({"-t", "A\\\\nA"}, "literal.png");
    EXPECT_GT(lines.second, literal.second);
    EXPECT_LT(lines.first, literal.first);
}

} // namespace
