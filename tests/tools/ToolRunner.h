#ifndef LMFONTEFFECT_TESTS_TOOLS_TOOLRUNNER_H
#define LMFONTEFFECT_TESTS_TOOLS_TOOLRUNNER_H

#include "RgbaImage.h"
#include "support/GoldenImage.h"
#include "support/TestSupport.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace LmTest {

inline const char* const kToolFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

// One run of lmtext as a user would start it: exit code and both output streams.
struct ToolRun {
    int exitCode = -1;
    std::string out;
    std::string err;
};

inline std::string readText(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline void writeText(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

// A private folder for one test's files.
inline std::string scratchDir()
{
    std::string pattern = ::testing::TempDir() + "lmtext-XXXXXX";
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    const char* made = mkdtemp(buf.data());
    return made ? std::string(made) + "/" : ::testing::TempDir();
}

inline std::string shellQuote(const std::string& s)
{
    std::string out = "'";
    for (char c : s) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

inline ToolRun runTool(const std::vector<std::string>& args)
{
    static const std::string dir = scratchDir();
    const std::string outPath = dir + "stdout.txt", errPath = dir + "stderr.txt";
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

// Renders with the test font into `path`, which must succeed, and reads the image back.
inline LmTextTool::RgbaImage renderTo(const std::string& path, const std::vector<std::string>& extra)
{
    std::vector<std::string> args = {"render", "-f", kToolFont, "-o", path};
    args.insert(args.end(), extra.begin(), extra.end());
    ToolRun r = runTool(args);
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_NE(r.out.find("wrote " + path), std::string::npos) << r.out;
    return LmTextTool::RgbaImage::readPng(path);
}

// Smallest box holding every pixel with some alpha: left, top, right, bottom (exclusive).
inline std::vector<unsigned> inkBox(const LmTextTool::RgbaImage& png)
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

} // namespace LmTest

#endif
