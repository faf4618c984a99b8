// lmtext's answers to bad input: exit codes, and messages that name what was wrong and what
// would have been right.
#include "ToolRunner.h"

#include <gtest/gtest.h>

using LmTest::kToolFont;
using LmTest::runTool;
using LmTest::ToolRun;

namespace {

const std::string kDir = LmTest::scratchDir();

ToolRun renderHi(std::vector<std::string> extra)
{
    std::vector<std::string> args = {"render", "-t", "Hi", "-f", kToolFont, "-o", kDir + "hi.png"};
    args.insert(args.end(), extra.begin(), extra.end());
    return runTool(args);
}

TEST(LmTextErrors, UnknownOptionsAndCommandsNameThemselvesAndTheValidOnes)
{
    ToolRun r = renderHi({"--strok", "size=3"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("--strok"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("valid options:"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("--stroke"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("--emboss"), std::string::npos) << r.err;

    r = runTool({"rendr"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("unknown command 'rendr'; valid commands: render, showcase"), std::string::npos) << r.err;

    r = runTool({"showcase", "--colums", "2"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("--colums"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("--columns"), std::string::npos) << r.err;
}

TEST(LmTextErrors, UnknownEffectsAndParametersListTheValidOnes)
{
    LmTest::writeText(kDir + "bad-effect.json", R"({"text": "Hi", "effects": [{"type": "bevell"}]})");
    ToolRun r = runTool({"render", kDir + "bad-effect.json", "-o", kDir + "x.png"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("unknown effect 'bevell'; valid effects: stroke, outer-shadow, inner-shadow, outer-glow, "
                         "inner-glow, linear-gradient, radial-gradient, pattern, bevel, emboss"),
              std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("effects[0]"), std::string::npos) << r.err;

    r = renderHi({"--stroke", "size=3,colr=red"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("--stroke: unknown parameter 'colr' for effect 'stroke'; valid parameters: size, color, "
                         "opacity, position, extra"),
              std::string::npos)
        << r.err;

    r = renderHi({"--stroke", "position=sideways"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("'sideways' is not one of center, centre, outside, inside"), std::string::npos) << r.err;

    r = renderHi({"--stroke", "size"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("'size' is not key=value"), std::string::npos) << r.err;

    LmTest::writeText(kDir + "bad-key.json", R"({"text": "Hi", "colour_of_text": "#000"})");
    r = runTool({"render", kDir + "bad-key.json", "-o", kDir + "x.png"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("colour_of_text: unknown key; valid keys: text, font, size, color"), std::string::npos)
        << r.err;
}

TEST(LmTextErrors, MalformedColoursAndNumbersNameTheArgument)
{
    ToolRun r = renderHi({"--stroke", "color=#12345"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("--stroke color: '#12345' is not a colour"), std::string::npos) << r.err;

    r = renderHi({"--color", "blurple"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("--color: 'blurple' is not a colour"), std::string::npos) << r.err;

    r = renderHi({"--outer-shadow", "angle=45,distance=4px"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("--outer-shadow distance: '4px' is not a number"), std::string::npos) << r.err;

    // Non-finite numbers are refused rather than handed to the library.
    r = renderHi({"--size", "nan"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("--size: 'nan' is not a number"), std::string::npos) << r.err;

    r = renderHi({"--width", "12.5"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("--width: '12.5' is not a whole number"), std::string::npos) << r.err;

    LmTest::writeText(kDir + "bad-size.json", R"({"text": "Hi", "size": "large"})");
    r = runTool({"render", kDir + "bad-size.json", "-o", kDir + "x.png"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("size: expected a number, got \"large\""), std::string::npos) << r.err;
}

TEST(LmTextErrors, UnreadableFilesNameThePathAndTheReason)
{
    ToolRun r = runTool({"render", "-t", "Hi", "-f", "/no/such/font.ttf", "-o", kDir + "x.png"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("cannot read font '/no/such/font.ttf': No such file or directory"), std::string::npos)
        << r.err;

    // A file that exists but holds no font.
    LmTest::writeText(kDir + "not-a-font.ttf", "plain text, not a font");
    r = runTool({"render", "-t", "Hi", "-f", kDir + "not-a-font.ttf", "-o", kDir + "x.png"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("cannot read font '" + kDir + "not-a-font.ttf'"), std::string::npos) << r.err;

    r = runTool({"render", kDir + "missing.json", "-o", kDir + "x.png"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("cannot read scene '" + kDir + "missing.json': No such file or directory"),
              std::string::npos)
        << r.err;

    LmTest::writeText(kDir + "broken.json", "{\"text\": \"Hi\",");
    r = runTool({"render", kDir + "broken.json", "-o", kDir + "x.png"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("cannot read scene '" + kDir + "broken.json': "), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("parse error"), std::string::npos) << r.err;

    r = runTool({"render", "-t", "Hi", "-f", kToolFont, "--pattern", "image=" + kDir + "none.png", "-o",
                 kDir + "x.png"});
    if (r.err.find("not available in this build") == std::string::npos) {
        EXPECT_EQ(r.exitCode, 1);
        EXPECT_NE(r.err.find("cannot read image '" + kDir + "none.png'"), std::string::npos) << r.err;
    }

    r = runTool({"render", "-t", "Hi", "-f", kToolFont, "-o", kDir + "no-such-dir/out.png"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("cannot write '" + kDir + "no-such-dir/out.png'"), std::string::npos) << r.err;
}

TEST(LmTextErrors, ClampedValuesAreReportedAndRenderAsTheLibraryClampsThem)
{
    ToolRun clamped = runTool({"render", "-t", "Hi", "-f", kToolFont, "--key", "--stroke",
                               "size=250,opacity=3", "--outer-shadow", "angle=-30,distance=4.7", "-o",
                               kDir + "clamped.png"});
    EXPECT_EQ(clamped.exitCode, 0) << clamped.err;
    EXPECT_NE(clamped.err.find("--stroke: size=250 is outside 0..100; clamped to 100"), std::string::npos)
        << clamped.err;
    EXPECT_NE(clamped.err.find("--stroke: opacity=3 is outside 0..1; clamped to 1"), std::string::npos);
    EXPECT_NE(clamped.err.find("--outer-shadow: angle=-30 wraps to 330"), std::string::npos);
    EXPECT_NE(clamped.err.find("--outer-shadow: distance=4.7 is truncated to 4"), std::string::npos);

    // Passing the clamped values gives the same stack: same key, same pixels, and no notes.
    ToolRun plain = runTool({"render", "-t", "Hi", "-f", kToolFont, "--key", "--stroke", "size=100,opacity=1",
                             "--outer-shadow", "angle=330,distance=4", "-o", kDir + "plain.png"});
    EXPECT_EQ(plain.exitCode, 0) << plain.err;
    EXPECT_EQ(plain.err.find("lmtext:"), std::string::npos) << plain.err;
    ASSERT_FALSE(plain.out.empty());
    EXPECT_EQ(clamped.out.substr(0, clamped.out.find('\n')), plain.out.substr(0, plain.out.find('\n')));
    LmTest::Png a = LmTest::readPng(kDir + "clamped.png"), b = LmTest::readPng(kDir + "plain.png");
    EXPECT_EQ(a.width, b.width);
    EXPECT_EQ(a.height, b.height);
    EXPECT_TRUE(a.rgba == b.rgba);
}

TEST(LmTextErrors, MissingEffectKindsSayTheyAreNotInThisBuild)
{
    // Each kind either renders or says plainly that this build lacks it.
    for (const char* kind : {"--outer-glow", "--inner-glow", "--linear-gradient", "--radial-gradient", "--pattern",
                             "--bevel", "--emboss"}) {
        ToolRun r = renderHi({kind, "defaults"});
        if (r.exitCode == 0) continue;
        EXPECT_EQ(r.exitCode, 1) << kind;
        std::string name = std::string(kind).substr(2);
        EXPECT_NE(r.err.find("effect '" + name + "' is not available in this build (available: stroke"),
                  std::string::npos)
            << r.err;
    }
}

TEST(LmTextErrors, HelpDocumentsEveryEffectParameterWithItsRange)
{
    ToolRun r = runTool({"render", "--help"});
    EXPECT_EQ(r.exitCode, 0);
    for (const char* text : {"--stroke", "--outer-shadow", "--inner-shadow", "--outer-glow", "--inner-glow",
                             "--linear-gradient", "--radial-gradient", "--pattern", "--bevel", "--emboss",
                             "highlight-opacity", "altitude", "0..89, wraps", "0..100, whole", "0..16",
                             "center|centre|outside|inside", "COLOUR[@POS][:OPACITY]"})
        EXPECT_NE(r.out.find(text), std::string::npos) << text;
}

TEST(LmTextErrors, RenderNeedsTextAndAnOutput)
{
    ToolRun r = runTool({"render", "-f", kToolFont, "-o", kDir + "x.png"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("no text to render"), std::string::npos) << r.err;

    r = runTool({"render", "-t", "Hi"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("no output: give -o"), std::string::npos) << r.err;

    r = runTool({"render", "-t", "Hi", "--wrap", "-o", kDir + "x.png"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("wrapping needs a view width"), std::string::npos) << r.err;

    r = renderHi({"--width", "0"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("the view width 0 is outside 1..16384"), std::string::npos) << r.err;
}

} // namespace
