#include "LmFontEffect.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

// The umbrella header must name every public header, so that a new class is not forgotten.
TEST(LmFontEffectHeader, IncludesEveryPublicHeader)
{
    const fs::path src = fs::path(LmTest::sourceDir()) / ".." / "src";
    std::ifstream in(src / "LmFontEffect.h");
    ASSERT_TRUE(in) << "cannot read " << (src / "LmFontEffect.h");
    std::stringstream text;
    text << in.rdbuf();
    int checked = 0;
    for (const auto& entry : fs::recursive_directory_iterator(src)) {
        if (entry.path().extension() != ".h" || entry.path().filename() == "LmFontEffect.h") continue;
        const std::string name = entry.path().filename().string();
        if (name.size() > 6 && name.compare(name.size() - 6, 6, "Impl.h") == 0) continue;
        const std::string rel = fs::relative(entry.path(), src).generic_string();
        EXPECT_NE(std::string::npos, text.str().find("#include \"" + rel + "\"")) << rel;
        ++checked;
    }
    EXPECT_GT(checked, 40);
}
