#include "foundation/LmString.h"

#include "foundation/Error.h"
#include "foundation/LmStringImpl.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

namespace LmFontEffect {

namespace {

const char* const kTag = "LmString";

// A buffer's byte count is a 32-bit value that saturates once length + 1 reaches 2^30;
// such a buffer could not hold the string, so it is refused.
const size_t kMaxChars = 0x40000000u;

size_t lengthOf(const wchar_t* s) { return s ? wcslen(s) : 0; }

// Whether the last allocChars of this thread failed for want of memory.
thread_local bool tRanOut = false;

// n + 1 characters, all terminators.
wchar_t* allocChars(size_t n)
{
    tRanOut = false;
    if (n >= kMaxChars) return nullptr;
    wchar_t* p = new (std::nothrow) wchar_t[n + 1];
    tRanOut = !p;
    if (p) wmemset(p, 0, n + 1);
    return p;
}

// The code for a buffer that could not be made: memory ran out (1) or the size is past the
// cap (7).
unsigned long allocFailure() { return tRanOut ? Error::LM_ERR_PLATFORM : Error::LM_ERR_INVALID_ARGUMENT; }

// The first n characters of s (fewer when s ends earlier; the rest stays terminators).
wchar_t* copyChars(const wchar_t* s, size_t n)
{
    wchar_t* p = allocChars(n);
    if (p && s) {
        size_t avail = wcsnlen(s, n);
        wmemcpy(p, s, avail);
    }
    return p;
}

// UTF-8 to code points without the C locale: ill-formed sequences become U+FFFD, one per
// maximal ill-formed subpart. Returns the character count; writes only when out is set.
size_t decodeUtf8(const char* text, size_t bytes, wchar_t* out)
{
    const uint8_t* s = reinterpret_cast<const uint8_t*>(text);
    int32_t length = (int32_t)bytes;
    int32_t i = 0;
    size_t n = 0;
    while (i < length) {
        UChar32 c;
        U8_NEXT_OR_FFFD(s, i, length, c);
        if (out) out[n] = (wchar_t)c;
        ++n;
    }
    return n;
}

// New buffer holding the UTF-8 text s, or null when it is too large or memory is short.
wchar_t* convertUtf8(const char* s)
{
    size_t bytes = strlen(s);
    tRanOut = false;
    if (bytes > (size_t)INT32_MAX) return nullptr;
    size_t n = decodeUtf8(s, bytes, nullptr);
    wchar_t* p = allocChars(n);
    if (p) decodeUtf8(s, bytes, p);
    return p;
}

// Valid Unicode scalar values are encoded as they are; anything else as U+FFFD, which
// never needs more bytes than the size count gives the original value.
bool isScalar(uint32_t c) { return c < 0x110000 && (c < 0xD800 || c > 0xDFFF); }

int utf8Bytes(uint32_t c)
{
    if (c < 0x80) return 1;
    if (c < 0x800) return 2;
    if (c < 0x10000) return 3;
    if (c < 0x200000) return 4;
    if (c < 0x4000000) return 5;
    return 6;
}

// Like the other lengths in this class, a size beyond int saturates.
int saturate(uint64_t v) { return v > (uint64_t)INT32_MAX ? INT32_MAX : (int)v; }

// Length first (deliberate: a longer string is always greater), then the characters.
int compareByLength(const wchar_t* a, size_t lenA, const wchar_t* b, size_t lenB)
{
    if (lenA > lenB) return 1;
    if (lenA < lenB) return -1;
    return wcsncmp(a ? a : L"", b ? b : L"", lenA);
}

// Forward, the start positions run 0 .. len - plen - 1: one short of the last, so a
// pattern as long as the string is never found (deliberate). Backward they run
// len - plen .. 0.
int searchWide(bool constructed, const wchar_t* buffer, const wchar_t* p, bool reverse)
{
    if (Error::ReportIf(!constructed, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    if (Error::ReportIf(!p, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    const wchar_t* buf = buffer ? buffer : L"";
    size_t len = wcslen(buf);
    size_t plen = wcslen(p);
    if (plen > len) return -1;
    if (reverse) {
        for (size_t pos = len - plen + 1; pos-- > 0;)
            if (wcsncmp(buf + pos, p, plen) == 0) return saturate(pos);
    } else {
        for (size_t pos = 0; pos + plen < len; ++pos)
            if (wcsncmp(buf + pos, p, plen) == 0) return saturate(pos);
    }
    return -1;
}

using WideSearch = int (LmString::*)(const wchar_t*) const;

// The UTF-8 forms of the searches: the same checks, then the wide search.
int searchUtf8(const LmString& self, bool constructed, const char* p, WideSearch search)
{
    if (Error::ReportIf(!constructed, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    if (Error::ReportIf(!p, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    std::unique_ptr<wchar_t[]> converted(convertUtf8(p));
    if (Error::ReportIf(!converted, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    return (self.*search)(converted.get());
}

} // namespace

int LmStringImpl::UTF32To16(char16_t* dst, const wchar_t* src, int n)
{
    if (!dst || n <= 0) return 0;
    int k = 0;
    if (src) {
        for (; k < n - 1 && *src; ++src) {
            uint32_t c = (uint32_t)*src;
            if (c < 0xFFFF) {
                dst[k++] = (char16_t)c;
            } else if (c <= 0x10FFFF) {
                if (k + 2 > n - 1) break;
                // For U+FFFF, c - 0x10000 wraps and the mask yields the pair DBFF DFFF.
                dst[k++] = (char16_t)(0xD800 | (((c - 0x10000) >> 10) & 0x3FF));
                dst[k++] = (char16_t)(0xDC00 | (c & 0x3FF));
            } else {
                dst[k++] = 0xFFFD;
            }
        }
    }
    dst[k++] = 0;
    return k;
}

LmString::LmString() : mImpl(nullptr) {}

LmString::~LmString()
{
    if (!mImpl) return;
    delete[] mImpl->mBuffer;
    delete mImpl;
}

bool LmString::Adopt(wchar_t* buffer)
{
    if (!mImpl) {
        mImpl = new (std::nothrow) LmStringImpl;
        if (!mImpl) {
            delete[] buffer;
            return false;
        }
    }
    delete[] mImpl->mBuffer;
    mImpl->mBuffer = buffer;
    return true;
}

bool LmString::Construct()
{
    if (Error::ReportIf(mImpl, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    return Adopt(nullptr);
}

bool LmString::Construct(const LmString* s)
{
    if (Error::ReportIf(mImpl, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!s, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    const wchar_t* src = s->GetPointer();
    if (!src) return Adopt(nullptr);
    return Construct(src);
}

bool LmString::Construct(const wchar_t* s)
{
    if (Error::ReportIf(mImpl, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!s, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    wchar_t* p = copyChars(s, wcslen(s));
    if (Error::ReportIf(!p, kTag, allocFailure(), __LINE__)) return false;
    return Adopt(p);
}

bool LmString::Construct(const char* s)
{
    if (Error::ReportIf(mImpl, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!s, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    wchar_t* p = convertUtf8(s);
    if (Error::ReportIf(!p, kTag, allocFailure(), __LINE__)) return false;
    return Adopt(p);
}

bool LmString::Construct(const LmString* s, int n)
{
    if (Error::ReportIf(mImpl, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!s, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    const wchar_t* src = s->GetPointer();
    return Construct(src ? src : L"", n);
}

bool LmString::Construct(const wchar_t* s, int n)
{
    if (Error::ReportIf(mImpl, kTag, Error::LM_ERR_ALREADY_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!s || n < 0, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    wchar_t* p = copyChars(s, (size_t)n);
    if (Error::ReportIf(!p, kTag, allocFailure(), __LINE__)) return false;
    return Adopt(p);
}

bool LmString::Set(const LmString* s)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    return Set(s ? s->GetPointer() : nullptr);
}

bool LmString::Set(const wchar_t* s)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (!s) return Adopt(nullptr);
    // Copy before freeing: s may be this string's own buffer.
    wchar_t* p = copyChars(s, wcslen(s));
    if (Error::ReportIf(!p, kTag, allocFailure(), __LINE__)) return false;
    return Adopt(p);
}

bool LmString::Set(const char* s)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (!s) return Adopt(nullptr);
    wchar_t* p = convertUtf8(s);
    if (Error::ReportIf(!p, kTag, allocFailure(), __LINE__)) return false;
    return Adopt(p);
}

bool LmString::Clear()
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    return Adopt(nullptr);
}

const wchar_t* LmString::GetPointer() const { return mImpl ? mImpl->mBuffer : nullptr; }

int LmString::GetLength() const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    return saturate(lengthOf(mImpl->mBuffer));
}

bool LmString::Append(const LmString* s)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (!s) return true;
    const wchar_t* src = s->GetPointer();
    return Append(src ? src : L"");
}

bool LmString::Append(const wchar_t* s)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (!s) return true;
    const wchar_t* old = mImpl->mBuffer;
    size_t len = lengthOf(old);
    size_t add = wcslen(s);
    wchar_t* p = allocChars(len + add);
    if (Error::ReportIf(!p, kTag, allocFailure(), __LINE__)) return false;
    if (old) wmemcpy(p, old, len);
    wmemcpy(p + len, s, add);
    return Adopt(p);
}

bool LmString::Append(const char* s)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (!s) return true;
    std::unique_ptr<wchar_t[]> converted(convertUtf8(s));
    if (Error::ReportIf(!converted, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    return Append(converted.get());
}

bool LmString::Insert(const wchar_t* s, int i)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (!s) return true;
    const wchar_t* old = mImpl->mBuffer;
    size_t len = lengthOf(old);
    if (Error::ReportIf(i < 0 || (size_t)i > len, kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__)) return false;
    size_t add = wcslen(s);
    // Deliberately stricter than Append, which accepts an empty string.
    if (Error::ReportIf(add == 0, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    wchar_t* p = allocChars(len + add);
    if (Error::ReportIf(!p, kTag, allocFailure(), __LINE__)) return false;
    if (old) {
        wmemcpy(p, old, (size_t)i);
        wmemcpy(p + i + add, old + i, len - (size_t)i);
    }
    wmemcpy(p + i, s, add);
    return Adopt(p);
}

bool LmString::Insert(const LmString* s, int i)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (!s) return true;
    const wchar_t* src = s->GetPointer();
    return Insert(src ? src : L"", i);
}

bool LmString::Remove(int i, int n)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    wchar_t* buf = mImpl->mBuffer;
    size_t len = lengthOf(buf);
    if (Error::ReportIf(i < 0 || (size_t)i >= len, kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__)) return false;
    if (Error::ReportIf(n < 0 || (size_t)i + (size_t)n > len, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    // In place: the tail and its terminator move down; the buffer keeps its size.
    wmemmove(buf + i, buf + i + n, len - (size_t)i - (size_t)n + 1);
    return true;
}

bool LmString::SetSubstring(const LmString* src, int from, int to)
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    const wchar_t* s = src ? src->GetPointer() : nullptr;
    if (Error::ReportIf(!s, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    int64_t count = (int64_t)to - from + 1;
    if (Error::ReportIf(from < 0 || count < 0, kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__)) return false;
    // to - from + 2 characters so the terminator fits. The range is not held to src's
    // length; characters past its end read as terminators instead of foreign memory.
    size_t srcLen = wcslen(s);
    wchar_t* p = allocChars((size_t)count);
    if (Error::ReportIf(!p, kTag, allocFailure(), __LINE__)) return false;
    if ((size_t)from < srcLen) wmemcpy(p, s + from, std::min<size_t>((size_t)count, srcLen - from));
    return Adopt(p);
}

bool LmString::GetChar(int i, wchar_t* out) const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    const wchar_t* buf = mImpl->mBuffer;
    if (Error::ReportIf(i < 0 || (size_t)i >= lengthOf(buf), kTag, Error::LM_ERR_OUT_OF_RANGE, __LINE__)) return false;
    if (Error::ReportIf(!out, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    *out = buf[i];
    return true;
}

int LmString::CompareTo(const LmString* s) const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    if (Error::ReportIf(!s, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    const wchar_t* other = s->GetPointer();
    return compareByLength(mImpl->mBuffer, lengthOf(mImpl->mBuffer), other, lengthOf(other));
}

int LmString::CompareTo(const char* s) const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    if (Error::ReportIf(!s, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    // The length test counts bytes of s, not characters.
    size_t len = lengthOf(mImpl->mBuffer);
    size_t bytes = strlen(s);
    if (len != bytes) return len > bytes ? 1 : -1;
    std::unique_ptr<wchar_t[]> converted(convertUtf8(s));
    if (Error::ReportIf(!converted, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    return compareByLength(mImpl->mBuffer, len, converted.get(), len);
}

int LmString::CompareTo(const char* s, int n) const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    if (Error::ReportIf(!s, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    if (n <= 0) return 0;
    std::unique_ptr<wchar_t[]> converted(convertUtf8(s));
    if (Error::ReportIf(!converted, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return -1;
    const wchar_t* buf = mImpl->mBuffer;
    return wcsncmp(buf ? buf : L"", converted.get(), (size_t)n);
}

int LmString::Find(const wchar_t* p) const
{
    return searchWide(mImpl != nullptr, mImpl ? mImpl->mBuffer : nullptr, p, false);
}

int LmString::Find(const char* p) const
{
    return searchUtf8(*this, mImpl != nullptr, p, static_cast<WideSearch>(&LmString::Find));
}

int LmString::ReverseFind(const wchar_t* p) const
{
    return searchWide(mImpl != nullptr, mImpl ? mImpl->mBuffer : nullptr, p, true);
}

int LmString::ReverseFind(const char* p) const
{
    return searchUtf8(*this, mImpl != nullptr, p, static_cast<WideSearch>(&LmString::ReverseFind));
}

int LmString::GetUTF8Size() const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    uint64_t size = 1;
    if (const wchar_t* p = mImpl->mBuffer)
        for (; *p; ++p) size += (uint64_t)utf8Bytes((uint32_t)*p);
    return saturate(size);
}

bool LmString::GetUTF8(char* dst, int size) const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return false;
    if (Error::ReportIf(!dst || size < 0, kTag, Error::LM_ERR_INVALID_ARGUMENT, __LINE__)) return false;
    if (size == 0) return true;
    // Whole characters only, as many as fit in size - 1 bytes.
    uint8_t* out = reinterpret_cast<uint8_t*>(dst);
    int32_t used = 0;
    if (const wchar_t* p = mImpl->mBuffer) {
        for (; *p; ++p) {
            uint32_t c = (uint32_t)*p;
            if (!isScalar(c)) c = 0xFFFD;
            if (used + U8_LENGTH(c) > size - 1) break;
            U8_APPEND_UNSAFE(out, used, c);
        }
    }
    dst[used] = '\0';
    dst[size - 1] = '\0';
    return true;
}

int LmString::GetUTF16Size() const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return -1;
    uint64_t size = 1;
    if (const wchar_t* p = mImpl->mBuffer) {
        for (; *p; ++p) {
            uint32_t c = (uint32_t)*p;
            // U+FFFF counts as a pair, matching UTF32To16.
            size += (c < 0xFFFF || c > 0x10FFFF) ? 1 : 2;
        }
    }
    return saturate(size);
}

char16_t* LmString::GetUTF16() const
{
    if (Error::ReportIf(!mImpl, kTag, Error::LM_ERR_NOT_CONSTRUCTED, __LINE__)) return nullptr;
    int size = GetUTF16Size();
    char16_t* dst = new (std::nothrow) char16_t[size];
    if (Error::ReportIf(!dst, kTag, Error::LM_ERR_PLATFORM, __LINE__)) return nullptr;
    LmStringImpl::UTF32To16(dst, mImpl->mBuffer, size);
    return dst;
}

} // namespace LmFontEffect
