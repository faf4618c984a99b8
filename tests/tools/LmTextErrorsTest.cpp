// lmtext's answers to bad input: the exit code, and a message that names the argument that
// was wrong and, where there is a choice, one of the valid ones.
#include "ToolRunner.h"

#include <gtest/gtest.h>

using LmTest::kToolFont;
using LmTest::runTool;
using LmTest::ToolRun;

namespace {

const std::string kDir = LmTest::scratchDir();

// A PNG header claiming 65535 x 65535 RGBA pixels, with a token IDAT and IEND.
const std::string kHugePng("\x89\x50\x4e\x47\x0d\x0a\x1a\x0a\x00\x00\x00\x0d\x49\x48\x44\x52\x00\x00\xff\xff\x00\x00\xff\xff\x08\x06\x00\x00\x00\xb6\x05\xd9"
                           "\x50\x00\x00\x00\x08\x49\x44\x41\x54\x78\x9c\x03\x00\x00\x00\x00\x01\x48\x06\x89\xd2\x00\x00\x00\x00\x49\x45\x4e\x44\xae\x42\x60\x82", 65);

TEST(LmTextErrors, BadInputGivesItsExitCodeAndNamesTheArgument)
{
    LmTest::writeText(kDir + "bad-effect.json", R"({"text": "Hi", "effects": [{"type": "bevell"}]})");
    LmTest::writeText(kDir + "bad-key.json", R"({"text": "Hi", "colour_of_text": "#000"})");
    LmTest::writeText(kDir + "bad-size.json", R"({"text": "Hi", "size": "large"})");
    LmTest::writeText(kDir + "bad-stop.json", R"({"text": "Hi", "effects": [
        {"type": "linear-gradient", "stops": [{"color": "#FF0000", "place": 0}]}]})");
    LmTest::writeText(kDir + "broken.json", "{\"text\": \"Hi\",");
    LmTest::writeText(kDir + "huge-number.json", R"({"text": "Hi", "size": 1e999})");
    LmTest::writeText(kDir + "not-a-font.ttf", "plain text, not a font");
    LmTest::writeText(kDir + "huge.png", kHugePng);
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

} // namespace
