// lmtext as a user runs it: scenes and options in, PNGs out, compared by their pixels and,
// for a few scenes, with golden images.
#include "ToolRunner.h"

#include "effect/LmEffect.h"

#include <gtest/gtest.h>

using LmTest::inkBox;
using LmTest::kToolFont;
using Png = LmTextTool::RgbaImage;
using LmTest::runTool;
using LmTest::ToolRun;

namespace {

const std::string kDir = LmTest::scratchDir();

Png render(const std::string& name, const std::vector<std::string>& extra) { return LmTest::renderTo(kDir + name, extra); }

std::string sceneFile(const std::string& name)
{
    return LmTest::sourceDir() + "/tools/scenes/" + name;
}

TEST(LmTextRender, SceneFileAndCommandLineDescribeTheSameRender)
{
    LmTest::writeText(kDir + "same.json", std::string(R"({"text": "Same", "font": ")") + kToolFont +
                                              R"(", "size": 30, "color": "#804020", "padding": 6,
        "effects": [{"type": "stroke", "size": 2, "color": "#FFFFFF"},
                    {"type": "inner-shadow", "angle": 90, "distance": 2, "size": 1}]})");
    ToolRun fromScene = runTool({"render", kDir + "same.json", "--key", "-o", kDir + "scene.png"});
    ToolRun fromOptions = runTool({"render", "-t", "Same", "-f", kToolFont, "-s", "30", "-c", "#804020", "-p", "6",
                                   "--stroke", "size=2,color=#FFFFFF", "--inner-shadow", "angle=90,distance=2,size=1",
                                   "--key", "-o", kDir + "options.png"});
    ASSERT_EQ(fromScene.exitCode, 0) << fromScene.err;
    ASSERT_EQ(fromOptions.exitCode, 0) << fromOptions.err;
    EXPECT_EQ(fromScene.out.substr(0, fromScene.out.find('\n')), fromOptions.out.substr(0, fromOptions.out.find('\n')));
    Png a = Png::readPng(kDir + "scene.png"), b = Png::readPng(kDir + "options.png");
    EXPECT_EQ(a.width(), b.width());
    EXPECT_EQ(a.height(), b.height());
    EXPECT_TRUE(a.bytes() == b.bytes());

    // Options given with a scene override its values; effects typed add to the scene's.
    ToolRun narrow = runTool({"render", kDir + "same.json", "-t", "I", "--outer-shadow", "defaults", "--key", "-o",
                              kDir + "narrow.png"});
    ASSERT_EQ(narrow.exitCode, 0) << narrow.err;
    EXPECT_LT(Png::readPng(kDir + "narrow.png").width(), a.width());
    EXPECT_EQ(narrow.out.rfind("4b", 0), 0u) << "the stroke stays first in the stack: " << narrow.out;
    EXPECT_NE(narrow.out.find("53"), std::string::npos) << "the shadow record 'S' is in the key: " << narrow.out;
}

TEST(LmTextRender, KeyIsTheLibrarysKeyInHex)
{
    ToolRun r = runTool({"render", "-t", "Hi", "-f", kToolFont, "--key", "--stroke",
                         "size=4,color=#FF0000,position=outside"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    LmFontEffect::LmEffect stack;
    stack.addStrokeText(4, 0xFFFF0000u, 1.0f, 0, 1);
    std::unique_ptr<char[]> key(stack.getMapKey(0xFF000000u));
    std::string hex;
    char digits[3];
    for (const char* p = key.get(); *p; ++p) {
        std::snprintf(digits, sizeof digits, "%02x", (unsigned char)*p);
        hex += digits;
    }
    EXPECT_EQ(r.out, hex + "\n");
}

TEST(LmTextRender, MaxLinesAndTopLeftGravity)
{
    // Colours, effect margins, fixed views, wrapping, line spacing and the centred and
    // bottom-right gravities are in the scenes' golden images.
    Png limited = render("limited.png", {"-t", "Ag\\nAg\\nAg", "--max-lines", "1"});
    EXPECT_LT(inkBox(limited)[3], limited.height() / 3 + 2);  // though the view fits all three
    const Png view = render("tl.png", {"-t", "Ag", "-W", "300", "-H", "150", "-g", "left|top"});
    EXPECT_EQ(std::make_pair(300u, 150u), std::make_pair(view.width(), view.height()));
    const std::vector<unsigned> tl = inkBox(view);
    EXPECT_LT(tl[0], 10u);
    EXPECT_LT(tl[1], 20u);
}

TEST(LmTextRender, BackgroundFillsTheWholeImage)
{
    Png png = render("bg.png", {"-t", "Hi", "--background", "#FF102030", "-p", "10"});
    EXPECT_EQ(0xFF102030u, png.argbAt(0, 0));
}

TEST(LmTextRender, ShowcaseShowsEveryKindInOneImage)
{
    ToolRun r = runTool({"showcase", "-o", kDir + "showcase.png"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_NE(r.out.find("wrote " + kDir + "showcase.png ("), std::string::npos) << r.out;
    Png png = Png::readPng(kDir + "showcase.png");
    EXPECT_GT(png.width(), 400u);
    EXPECT_GT(png.height(), 300u);
    EXPECT_EQ(r.err, ""); // every kind is in the library: none is left out
}

TEST(LmTextRender, ScenesMatchTheirGoldenImages)
{
    for (const char* name : {"stroke_shadow", "inner_shadow_lines", "glows", "bevel_emboss", "gradient_pattern"}) {
        const std::string out = kDir + name + std::string(".png");
        ToolRun r = runTool({"render", sceneFile(name + std::string(".json")), "-o", out});
        ASSERT_EQ(r.exitCode, 0) << r.err;
        Png png = Png::readPng(out);
        EXPECT_TRUE(LmTest::GoldenImage::matches(std::string("tools/") + name, png.width(), png.height(), png.bytes().data()));
    }
}

} // namespace

TEST(LmTextRender, WholeInkByDefaultAndClippedToTheAdvanceOnRequest)
{
    // Clipped, the hook of "j" is shifted in to column 0 and the italic "f" cut at the advance.
    const std::vector<unsigned> whole = inkBox(render("whole.png", {"-t", "jf", "-s", "96", "--italic"}));
    const std::vector<unsigned> cut = inkBox(render("cut.png", {"-t", "jf", "-s", "96", "--italic", "--clip-to-advance"}));
    EXPECT_GT(whole[2] - whole[0], cut[2] - cut[0] + 5);
    EXPECT_EQ(0u, cut[0]);
}
