// lmtext as a user runs it: scenes and options in, PNGs and keys out, compared by their pixels
// and, for a few scenes, with golden images; how it reads the values users type; and its
// answers to bad input.
#include "RgbaImage.h"
#include "support/GoldenImage.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using Png = LmTextTool::RgbaImage;

namespace {

const char* const kToolFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

// One run of lmtext as a user would start it: exit code and both output streams.
struct ToolRun {
    int exitCode = -1;
    std::string out;
    std::string err;
};

std::string readText(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void writeText(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

// A private folder for this program's files.
std::string scratchDir()
{
    std::string pattern = ::testing::TempDir() + "lmtext-XXXXXX";
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    const char* made = mkdtemp(buf.data());
    return made ? std::string(made) + "/" : ::testing::TempDir();
}

const std::string kDir = scratchDir();

std::string shellQuote(const std::string& s)
{
    std::string out = "'";
    for (char c : s) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

ToolRun runTool(const std::vector<std::string>& args)
{
    const std::string outPath = kDir + "stdout.txt", errPath = kDir + "stderr.txt";
    std::string command = std::string(LM_TOOL_EMULATOR) + " " + shellQuote(LM_TEXT_TOOL);
    for (const std::string& a : args) command += " " + shellQuote(a);
    command += " >" + shellQuote(outPath) + " 2>" + shellQuote(errPath);
    ToolRun run;
    int status = std::system(command.c_str());
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = readText(outPath);
    run.err = readText(errPath);
    return run;
}

// `render -t Hi` with the test font and --key, then `extra`.
ToolRun keyOf(std::vector<std::string> extra)
{
    extra.insert(extra.begin(), {"render", "-t", "Hi", "-f", kToolFont, "--key"});
    return runTool(extra);
}

std::string firstLine(const std::string& s) { return s.substr(0, s.find('\n')); }

// Renders with the test font into the scratch file `name`, which must succeed, and reads it back.
Png render(const std::string& name, std::vector<std::string> extra)
{
    const std::string path = kDir + name;
    extra.insert(extra.begin(), {"render", "-f", kToolFont, "-o", path});
    ToolRun r = runTool(extra);
    EXPECT_NE(r.out.find("wrote " + path), std::string::npos) << r.out << r.err;
    return Png::readPng(path);
}

// Smallest box holding every pixel with some alpha: left, top, right, bottom (exclusive).
std::vector<unsigned> inkBox(const Png& png)
{
    unsigned l = png.width(), t = png.height(), r = 0, b = 0;
    for (unsigned y = 0; y < png.height(); ++y)
        for (unsigned x = 0; x < png.width(); ++x)
            if (png.argbAt(x, y) >> 24) {
                l = std::min(l, x);
                t = std::min(t, y);
                r = std::max(r, x + 1);
                b = std::max(b, y + 1);
            }
    return {l, t, r, b};
}

// A PNG header claiming 65535 x 65535 RGBA pixels, with a token IDAT and IEND.
const std::string kHugePng("\x89\x50\x4e\x47\x0d\x0a\x1a\x0a\x00\x00\x00\x0d\x49\x48\x44\x52\x00\x00\xff\xff\x00\x00\xff\xff\x08\x06\x00\x00\x00\xb6\x05\xd9"
                           "\x50\x00\x00\x00\x08\x49\x44\x41\x54\x78\x9c\x03\x00\x00\x00\x00\x01\x48\x06\x89\xd2\x00\x00\x00\x00\x49\x45\x4e\x44\xae\x42\x60\x82", 65);

// The exit code, and a message that names the argument that was wrong and, where there is a
// choice, one of the valid ones.
TEST(LmTextErrors, BadInputGivesItsExitCodeAndNamesTheArgument)
{
    writeText(kDir + "bad-effect.json", R"({"text": "Hi", "effects": [{"type": "bevell"}]})");
    writeText(kDir + "bad-key.json", R"({"text": "Hi", "colour_of_text": "#000"})");
    writeText(kDir + "bad-size.json", R"({"text": "Hi", "size": "large"})");
    writeText(kDir + "bad-stop.json", R"({"text": "Hi", "effects": [
        {"type": "linear-gradient", "stops": [{"color": "#FF0000", "place": 0}]}]})");
    writeText(kDir + "broken.json", "{\"text\": \"Hi\",");
    writeText(kDir + "huge-number.json", R"({"text": "Hi", "size": 1e999})");
    writeText(kDir + "not-a-font.ttf", "plain text, not a font");
    writeText(kDir + "huge.png", kHugePng);
    const std::string out = kDir + "x.png";
    const std::vector<std::string> hi = {"render", "-t", "Hi", "-f", kToolFont, "-o", out};
    struct Case {
        std::vector<std::string> extra;  // after `hi` when withHi
        bool withHi;
        int exitCode;
        std::string named;  // the argument the message names
        std::string valid;  // a valid choice it names too, if any
    };
    const Case cases[] = {
        // Unknown commands, options, effects, parameters and keys list the valid ones.
        {{"rendr"}, false, 2, "rendr", "showcase"},
        {{"--strok", "size=3"}, true, 2, "--strok", "--emboss"},
        {{"showcase", "--colums", "2"}, false, 2, "--colums", "--columns"},
        {{"render", kDir + "bad-effect.json", "-o", out}, false, 2, "bevell", "radial-gradient"},
        {{"--stroke", "size=3,colr=red"}, true, 2, "colr", "position"},
        {{"--stroke", "position=sideways"}, true, 2, "sideways", "outside"},
        {{"--stroke", "size"}, true, 2, "'size' is not key=value", ""},
        {{"render", kDir + "bad-key.json", "-o", out}, false, 2, "colour_of_text", "color"},
        {{"render", kDir + "bad-stop.json", "-f", kToolFont, "--key"}, false, 2, "stops[0].place", "opacity"},
        {{"-g", "left|middle"}, true, 2, "middle", "right"},
        // Malformed values.
        {{"--stroke", "color=#12345"}, true, 2, "#12345", ""},
        {{"--color", "blurple"}, true, 2, "blurple", ""},
        {{"--outer-shadow", "angle=45,distance=4px"}, true, 2, "4px", ""},
        {{"--size", "nan"}, true, 2, "--size", ""},  // refused rather than handed to the library
        {{"--width", "12.5"}, true, 2, "12.5", ""},
        {{"--width", "0"}, true, 2, "width 0", "1..16384"},
        {{"-p", "1,2,3"}, true, 2, "1,2,3", "LEFT,TOP,RIGHT,BOTTOM"},
        // Huge geometry is summed without wrapping: a fitted view passes the side cap, text in a
        // fixed view lies outside it.
        {{"-t", "A\\nB", "--line-spacing", "1e9"}, true, 2, "height", "1..16384"},
        {{"-W", "100", "-p", "2000000000"}, true, 2, "height", "1..16384"},
        {{"-W", "100", "-H", "60", "-p", "0,2147483647,0,0"}, true, 0, "", ""},
        {{"-H", "60", "-p", "0,2000000000,0,2000000000", "-g", "center_vertical"}, true, 0, "", ""},
        {{"--linear-gradient", "stops=#F00@0+blue@x"}, true, 2, "'x'", ""},
        {{"render", kDir + "bad-size.json", "-o", out}, false, 2, "\"large\"", ""},
        // Missing pieces.
        {{"render", "-f", kToolFont, "-o", out}, false, 2, "no text", "--text"},
        {{"render", "-t", "Hi"}, false, 2, "no output", "-o"},
        {{"render", "-t", "Hi", "--wrap", "-o", out}, false, 2, "wrapping", "--width"},
        // Files that cannot be read or written name the path and the reason.
        {{"render", "-t", "Hi", "-f", "/no/such/font.ttf", "-o", out}, false, 1, "/no/such/font.ttf",
         "No such file"},
        {{"render", "-t", "Hi", "-f", kDir + "not-a-font.ttf", "-o", out}, false, 1, kDir + "not-a-font.ttf", ""},
        {{"render", kDir + "missing.json", "-o", out}, false, 1, kDir + "missing.json", "No such file"},
        // Malformed JSON is a bad scene: the file, the last key read and the reason.
        {{"render", kDir + "broken.json", "-o", out}, false, 2, kDir + "broken.json", "parse error"},
        {{"render", kDir + "huge-number.json", "-o", out}, false, 2, kDir + "huge-number.json", "key \"size\""},
        // An image header is checked against the cap before its pixels are allocated.
        {{"--pattern", "image=" + kDir + "huge.png"}, true, 1, kDir + "huge.png", "over the limit"},
        {{"--pattern", "image=" + kDir + "none.png"}, true, 1, "cannot read image '" + kDir + "none.png'", ""},
        {{"render", "-t", "Hi", "-f", kToolFont, "-o", kDir + "no-such-dir/out.png"}, false, 1,
         kDir + "no-such-dir/out.png", ""},
    };
    for (const Case& c : cases) {
        std::vector<std::string> args = c.withHi ? hi : std::vector<std::string>{};
        args.insert(args.end(), c.extra.begin(), c.extra.end());
        ToolRun r = runTool(args);
        const std::string what = c.extra.empty() ? "" : c.extra.front() + " " + c.extra.back();
        EXPECT_EQ(r.exitCode, c.exitCode) << what << ": " << r.err;
        EXPECT_NE(r.err.find(c.named), std::string::npos) << what << ": " << r.err;
        EXPECT_NE(r.err.find(c.valid), std::string::npos) << what << ": " << r.err;
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

TEST(LmTextValues, ColourFormsMeanTheSameColour)
{
    // The key ends with the text layer, which holds the text colour.
    const std::string red = keyOf({"-c", "#FFFF0000"}).out;
    EXPECT_NE(red, keyOf({"-c", "#FFFF0001"}).out);
    for (const char* form : {"#F00", "#ff0000", "0xff0000", "red", "RED"}) {
        ToolRun r = keyOf({"-c", form});
        EXPECT_EQ(r.out, red) << form << ": " << r.err;
    }
    EXPECT_EQ(keyOf({"-c", "orange"}).out, keyOf({"-c", "#FFA500"}).out);
}

// The key holds the text colour without its alpha: the render shows that the alpha arrived.
TEST(LmTextValues, TextAlphaIsTheOverallAlpha)
{
    Png png = render("half.png", {"-t", "Hi", "-c", "#80000000", "--stroke", "size=2,color=#FF0000"});
    unsigned maxAlpha = 0;
    for (size_t i = 3; i < png.bytes().size(); i += 4) maxAlpha = std::max<unsigned>(maxAlpha, png.bytes()[i]);
    EXPECT_GE(maxAlpha, 120u);
    EXPECT_LE(maxAlpha, 129u);
}

TEST(LmTextValues, ValuesTheLibraryChangesAreNoted)
{
    writeText(kDir + "stops.json", R"({"text": "Hi", "effects": [
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
    EXPECT_EQ(plain.err.find("lmtext:"), std::string::npos) << plain.err;
    ASSERT_FALSE(plain.out.empty());
    EXPECT_EQ(firstLine(clamped.out), firstLine(plain.out));
    EXPECT_TRUE(Png::readPng(kDir + "clamped.png").bytes() == Png::readPng(kDir + "plain.png").bytes());
}

TEST(LmTextValues, PaddingGravityAndEscapes)
{
    auto size = [](std::vector<std::string> extra, const std::string& name) {
        extra.insert(extra.begin(), {"-t", "Hi"}); // a later -t wins
        const Png png = render(name, extra);
        return std::make_pair(png.width(), png.height());
    };
    auto bare = size({}, "bare.png");
    auto two = size({"-p", "5,10"}, "pad2.png");
    EXPECT_EQ(two, std::make_pair(bare.first + 10, bare.second + 20));

    EXPECT_EQ(keyOf({"-g", "0x55"}).exitCode, 0);

    // "\n" typed on the command line starts a line; "\\n" keeps a backslash and an n.
    auto lines = size({"-t", "A\\nA"}, "escaped.png");
    auto literal = size({"-t", "A\\\\nA"}, "literal.png");
    EXPECT_GT(lines.second, literal.second);
    EXPECT_LT(lines.first, literal.first);
}

TEST(LmTextRender, SceneFileAndCommandLineDescribeTheSameRender)
{
    writeText(kDir + "same.json", std::string(R"({"text": "Same", "font": ")") + kToolFont +
                                      R"(", "size": 30, "color": "#804020", "padding": 6,
        "effects": [{"type": "stroke", "size": 2, "color": "#FFFFFF"},
                    {"type": "inner-shadow", "angle": 90, "distance": 2, "size": 1}]})");
    ToolRun fromScene = runTool({"render", kDir + "same.json", "--key", "-o", kDir + "scene.png"});
    ToolRun fromOptions = runTool({"render", "-t", "Same", "-f", kToolFont, "-s", "30", "-c", "#804020", "-p", "6",
                                   "--stroke", "size=2,color=#FFFFFF", "--inner-shadow", "angle=90,distance=2,size=1",
                                   "--key", "-o", kDir + "options.png"});
    EXPECT_EQ(firstLine(fromScene.out), firstLine(fromOptions.out)) << fromScene.err << fromOptions.err;
    Png a = Png::readPng(kDir + "scene.png"), b = Png::readPng(kDir + "options.png");
    EXPECT_TRUE(a.bytes() == b.bytes());

    // Options given with a scene override its values; effects typed add to the scene's.
    ToolRun narrow = runTool({"render", kDir + "same.json", "-t", "I", "--outer-shadow", "defaults", "--key", "-o",
                              kDir + "narrow.png"});
    EXPECT_LT(Png::readPng(kDir + "narrow.png").width(), a.width());
    EXPECT_EQ(narrow.out.rfind("4b", 0), 0u) << "the stroke stays first in the stack: " << narrow.out << narrow.err;
    EXPECT_NE(narrow.out.find("53"), std::string::npos) << "the shadow record 'S' is in the key: " << narrow.out;
}

TEST(LmTextRender, MaxLinesAndTopLeftGravity)
{
    // Colours, effect margins, fixed views, wrapping, line spacing and the centred and
    // bottom-right gravities are in the scenes' golden images.
    Png limited = render("limited.png", {"-t", "Ag\\nAg\\nAg", "--max-lines", "1"});
    EXPECT_LT(inkBox(limited)[3], limited.height() / 3 + 2);  // though the view fits all three
    const Png view = render("tl.png", {"-t", "Ag", "-W", "300", "-H", "150", "-g", "left|top"});
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
    for (const std::string name : {"stroke_shadow", "inner_shadow_lines", "glows", "bevel_emboss", "gradient_pattern"}) {
        const std::string out = kDir + name + ".png";
        ToolRun r = runTool({"render", LmTest::sourceDir() + "/tools/scenes/" + name + ".json", "-o", out});
        ASSERT_EQ(r.exitCode, 0) << r.err;
        Png png = Png::readPng(out);
        EXPECT_TRUE(LmTest::GoldenImage::matches("tools/" + name, png.width(), png.height(), png.bytes().data()));
    }
}

TEST(LmTextRender, WholeInkByDefaultAndClippedToTheAdvanceOnRequest)
{
    // Clipped, the hook of "j" is shifted in to column 0 and the italic "f" cut at the advance.
    const std::vector<unsigned> whole = inkBox(render("whole.png", {"-t", "jf", "-s", "96", "--italic"}));
    const std::vector<unsigned> cut = inkBox(render("cut.png", {"-t", "jf", "-s", "96", "--italic", "--clip-to-advance"}));
    EXPECT_GT(whole[2] - whole[0], cut[2] - cut[0] + 5);
    EXPECT_EQ(0u, cut[0]);
}

} // namespace
