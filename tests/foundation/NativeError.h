#ifndef LMFONTEFFECT_TESTS_FOUNDATION_NATIVEERROR_H
#define LMFONTEFFECT_TESTS_FOUNDATION_NATIVEERROR_H

#include "foundation/Error.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <string>

// Expects expr to give the failure value and leave code as the thread's error. The code is
// cleared first so that one left by an earlier call cannot pass for this one.
#define EXPECT_FAILS(value, code, expr)                                              \
    do {                                                                             \
        LmFontEffect::Error::SetError(0);                                            \
        EXPECT_EQ(value, expr);                                                      \
        EXPECT_EQ((unsigned long)(code), LmFontEffect::Error::GetError()) << #expr; \
    } while (0)

namespace LmTest {

// True when an error-priority "@ Native Error <code> : <site>" line was logged under tag.
inline bool loggedNativeError(const LogCapture& log, const std::string& tag, unsigned long code)
{
    const std::string prefix = "@ Native Error " + std::to_string(code) + " : ";
    for (const LogLine& l : log.lines())
        if (l.priority == 6 && l.tag == tag && l.message.compare(0, prefix.size(), prefix) == 0 &&
            l.message.size() > prefix.size())
            return true;
    return false;
}

} // namespace LmTest

#endif
