#include "foundation/File.h"

#include "foundation/Error.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <string>

namespace LmFontEffect {

namespace {

const char* const kTag = "Lm_File";

// A path helper's own message instead of the numbered line.
void badPath(const char* what)
{
    LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "%s() - pathSize < 0", what);
    Error::SetError(Error::LM_ERR_INVALID_ARGUMENT);
}

// UTF-8 form of path in out; returns GetUTF8Size (below 1 when there is none).
int utf8Of(LmString const* path, std::string& out)
{
    int size = path ? path->GetUTF8Size() : -1;
    if (size < 1) return size;
    out.assign((size_t)size, '\0');
    path->GetUTF8(&out[0], size);
    out.resize(strlen(out.c_str()));
    return size;
}

} // namespace

struct FileRecord {
    FILE* stream = nullptr;
    int sync = 0; // the stream was opened to write or append: Close syncs it to disk
    bool keepOpen = false;
};

namespace {

FileRecord* openRecord(const char* path, const char* mode, bool keepOpen)
{
    FileRecord* record = new (std::nothrow) FileRecord;
    if (!record) return nullptr;
    record->stream = fopen(path, mode);
    if (!record->stream) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "OpenFile - Fail to open file. errno = %d", errno);
        Error::Report(kTag, Error::LM_ERR_OPEN_FAILED, __LINE__);
        delete record;
        return nullptr;
    }
    record->keepOpen = keepOpen;
    record->sync = (strchr(mode, 'w') || strchr(mode, 'a')) ? 1 : 0;
    return record;
}

} // namespace

File::File() : mRecord(nullptr) {}

File::~File()
{
    if (!mRecord) return;
    Close();
    delete mRecord;
}

bool File::Construct(LmString const* path, char const* mode, bool keepOpen)
{
    if (Error::ReportIf(mRecord, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!path || !mode || !*mode, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    std::string utf8;
    if (utf8Of(path, utf8) <= 0) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "OpenFile() - pathSize < 0");
        Error::SetError(Error::LM_ERR_INVALID_ARGUMENT);
        return false;
    }
    if (Error::ReportIf(utf8.empty(), kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    mRecord = openRecord(utf8.c_str(), mode, keepOpen);
    return mRecord != nullptr;
}

bool File::Construct(char const* path, char const* mode)
{
    if (Error::ReportIf(mRecord, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!path || !*path || !mode || !*mode, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    // A plain path goes to the system as it is, whatever its encoding.
    mRecord = openRecord(path, mode, false);
    return mRecord != nullptr;
}

unsigned long File::Read(void* buffer, unsigned long size, unsigned long n)
{
    if (!mRecord || !mRecord->stream || !buffer) return 0;
    return fread(buffer, size, n, mRecord->stream);
}

unsigned long File::Write(void const* buffer, unsigned long size, unsigned long n)
{
    if (!mRecord || !mRecord->stream || !buffer) return 0;
    return fwrite(buffer, size, n, mRecord->stream);
}

int File::Seek(long offset, int whence)
{
    FILE* f = GetFilePointer();
    return f ? fseek(f, offset, whence) : -1;
}

long File::Tell() const
{
    FILE* f = GetFilePointer();
    return f ? ftell(f) : -1;
}

int File::Eof() const
{
    FILE* f = GetFilePointer();
    return f ? feof(f) : -1;
}

int File::Error() const
{
    FILE* f = GetFilePointer();
    return f ? ferror(f) : -1;
}

int File::GetFileDescriptor() const
{
    FILE* f = GetFilePointer();
    return f ? fileno(f) : -1;
}

FILE* File::GetFilePointer() const { return mRecord ? mRecord->stream : nullptr; }

void File::Close()
{
    if (!mRecord || !mRecord->stream || mRecord->keepOpen) return;
    fflush(mRecord->stream);
    if (mRecord->sync) fsync(fileno(mRecord->stream));
    fclose(mRecord->stream);
    mRecord->stream = nullptr;
}

int File::IsAccessible(LmString const* path, int mode)
{
    std::string utf8;
    if (utf8Of(path, utf8) < 1) {
        badPath("IsAccessible");
        return -1;
    }
    return access(utf8.c_str(), mode);
}

int File::IsAccessible(char const* path, int mode)
{
    if (Error::ReportIf(!path, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    return access(path, mode);
}

int File::Unlink(LmString const* path)
{
    std::string utf8;
    if (utf8Of(path, utf8) < 1) {
        badPath("Unlink");
        return -1;
    }
    return unlink(utf8.c_str());
}

int File::Unlink(char const* path)
{
    if (Error::ReportIf(!path, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    return unlink(path);
}

int File::Rename(LmString const* oldPath, LmString const* newPath)
{
    std::string oldUtf8, newUtf8;
    int oldSize = utf8Of(oldPath, oldUtf8);
    int newSize = utf8Of(newPath, newUtf8);
    if (oldSize < 1 || newSize < 1) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "Rename() - pathSize < 0 : old %d, new %d", oldSize, newSize);
        Error::SetError(Error::LM_ERR_INVALID_ARGUMENT);
        return -1;
    }
    return rename(oldUtf8.c_str(), newUtf8.c_str());
}

int File::Rename(char const* oldPath, char const* newPath)
{
    if (Error::ReportIf(!oldPath || !newPath, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    return rename(oldPath, newPath);
}

} // namespace LmFontEffect
