#ifndef LMFONTEFFECT_TESTS_FOUNDATION_NATIVEERROR_H
#define LMFONTEFFECT_TESTS_FOUNDATION_NATIVEERROR_H

#include "support/TestSupport.h"

#include <string>

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
