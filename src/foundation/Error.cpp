#include "foundation/Error.h"

#include "foundation/LmLog.h"

namespace LmFontEffect {

namespace {
thread_local unsigned long tLastError = 0;
}

void Error::SetError(unsigned long code) { tLastError = code; }

unsigned long Error::GetError() { return tLastError; }

void Error::Report(const char* tag, unsigned long code, int site)
{
    LmLog::Print(LmLog::LM_PRIO_ERROR, tag, "@ Native Error %ld : %d", (long)code, site);
    SetError(code);
}

bool Error::ReportIf(bool bad, const char* tag, unsigned long code, int site)
{
    if (bad) Report(tag, code, site);
    return bad;
}

} // namespace LmFontEffect
