#ifndef LMFONTEFFECT_FOUNDATION_ERROR_H
#define LMFONTEFFECT_FOUNDATION_ERROR_H

namespace LmFontEffect {

// Per-thread last error code. Codes: 1 platform call failed, 2 too many traversals,
// 3 index out of range, 4 already constructed, 7 invalid or null argument,
// 8 object or implementation missing, 9 unknown handle or traversal past the end,
// 11 open failed, 19 no native object bound to the Java object.
class Error {
public:
    enum Code : unsigned long {
        LM_ERR_NONE = 0,
        LM_ERR_PLATFORM = 1,
        LM_ERR_TOO_MANY_TRAVERSALS = 2,
        LM_ERR_OUT_OF_RANGE = 3,
        LM_ERR_ALREADY_CONSTRUCTED = 4,
        LM_ERR_INVALID_ARGUMENT = 7,
        LM_ERR_NOT_CONSTRUCTED = 8,
        LM_ERR_UNKNOWN_HANDLE = 9,
        LM_ERR_OPEN_FAILED = 11,
        LM_ERR_NOT_BOUND = 19,
    };

    static void SetError(unsigned long code);
    static unsigned long GetError();

    // The failure convention shared by the foundation, text and bridge classes: an
    // error-priority line "@ Native Error %ld : %d" under the component's tag, then SetError.
    static void Report(const char* tag, unsigned long code, int site);
    // Reports when `bad` holds; returns `bad`, so a check and its early return fit one line.
    static bool ReportIf(bool bad, const char* tag, unsigned long code, int site);
};

} // namespace LmFontEffect

#endif
