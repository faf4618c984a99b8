#ifndef LMFONTEFFECT_FOUNDATION_FILE_H
#define LMFONTEFFECT_FOUNDATION_FILE_H

#include <cstdio>

namespace LmFontEffect {

class LmString;
struct FileRecord;

// Owner of a stdio stream. Construct opens it; a stream opened for writing or appending
// is flushed and synced to disk on Close. A keep-open file is never flushed or closed by
// this object. Failures: error 4 already constructed, 7 bad path or mode, 11 open failed.
class File {
public:
    File();
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool Construct(LmString const* path, char const* mode, bool keepOpen);
    bool Construct(char const* path, char const* mode);

    // 0 when not open.
    unsigned long Read(void* buffer, unsigned long size, unsigned long n);
    unsigned long Write(void const* buffer, unsigned long size, unsigned long n);
    // -1 when not open.
    int Seek(long offset, int whence);
    long Tell() const;
    int Eof() const;
    int Error() const;
    int GetFileDescriptor() const;
    FILE* GetFilePointer() const;
    void Close();

    // access / unlink / rename; the LmString forms convert to UTF-8 first. -1 with error 7
    // for a null or unconvertible path.
    static int IsAccessible(LmString const* path, int mode);
    static int IsAccessible(char const* path, int mode);
    static int Unlink(LmString const* path);
    static int Unlink(char const* path);
    static int Rename(LmString const* oldPath, LmString const* newPath);
    static int Rename(char const* oldPath, char const* newPath);

private:
    FileRecord* mRecord;
};

} // namespace LmFontEffect

#endif
