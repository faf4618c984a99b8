#ifndef LMFONTEFFECT_TESTS_FOUNDATION_NATIVEERROR_H
#define LMFONTEFFECT_TESTS_FOUNDATION_NATIVEERROR_H

#include "foundation/Error.h"

#include <gtest/gtest.h>

// Expects expr to give the failure value and leave code as the thread's error. The code is
// cleared first so that one left by an earlier call cannot pass for this one.
#define EXPECT_FAILS(value, code, expr)                                              \
    do {                                                                             \
        LmFontEffect::Error::SetError(0);                                            \
        EXPECT_EQ(value, expr);                                                      \
        EXPECT_EQ((unsigned long)(code), LmFontEffect::Error::GetError()) << #expr; \
    } while (0)

#endif
