#ifndef LMTEXT_TOOLERROR_H
#define LMTEXT_TOOLERROR_H

#include <stdexcept>
#include <string>

namespace LmTextTool {

// A failure the user can act on. The exit code tells scripts what kind it was: 2 for a
// malformed command line or scene (unknown names, malformed values), 1 for a file that cannot
// be read or written, or a render the library cannot do.
class ToolError : public std::runtime_error {
public:
    enum { kFailure = 1, kUsage = 2 };

    ToolError(int exitCode, const std::string& message) : std::runtime_error(message), mExitCode(exitCode) {}

    static ToolError usage(const std::string& message) { return ToolError(kUsage, message); }
    static ToolError failure(const std::string& message) { return ToolError(kFailure, message); }

    int exitCode() const { return mExitCode; }

private:
    int mExitCode;
};

} // namespace LmTextTool

#endif
