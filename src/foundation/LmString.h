#ifndef LMFONTEFFECT_FOUNDATION_LMSTRING_H
#define LMFONTEFFECT_FOUNDATION_LMSTRING_H

#include <cwchar>

namespace LmFontEffect {

class LmStringImpl;

// NUL-terminated string of 32-bit code points. Two-phase: a trivial constructor, then one
// Construct. Failures return false / -1 / null and set the thread's error code
// (3 index out of range, 4 already constructed, 7 invalid argument, 8 not constructed).
// A string whose buffer is null (after Construct() or Set(nullptr)) reads as empty.
// Every char* input is UTF-8; invalid bytes decode to U+FFFD.
class LmString {
public:
    LmString();
    ~LmString();
    LmString(const LmString&) = delete;
    LmString& operator=(const LmString&) = delete;

    bool Construct();
    bool Construct(const LmString* s);
    bool Construct(const wchar_t* s);
    bool Construct(const char* s);
    // Exactly the first n characters (shorter sources are padded with terminators).
    bool Construct(const LmString* s, int n);
    bool Construct(const wchar_t* s, int n);

    // A null argument leaves the string with a null buffer and succeeds.
    bool Set(const LmString* s);
    bool Set(const wchar_t* s);
    bool Set(const char* s);
    bool Clear();

    const wchar_t* GetPointer() const;
    int GetLength() const;

    // A null argument is a successful no-op.
    bool Append(const LmString* s);
    bool Append(const wchar_t* s);
    bool Append(const char* s);
    // 0 <= i <= length; an empty s fails with error 7 (unlike Append).
    bool Insert(const wchar_t* s, int i);
    bool Insert(const LmString* s, int i);
    bool Remove(int i, int n);
    // Characters from..to of src, both inclusive.
    bool SetSubstring(const LmString* src, int from, int to);

    bool GetChar(int i, wchar_t* out) const;
    // The longer string is greater; only equal lengths compare the characters.
    int CompareTo(const LmString* s) const;
    // Length against strlen(s) in bytes, then the characters.
    int CompareTo(const char* s) const;
    // The first n characters, without a length test.
    int CompareTo(const char* s, int n) const;
    // First match among the start positions 0 .. length - len(p) - 1 (the last position
    // is never tried), or -1.
    int Find(const wchar_t* p) const;
    int Find(const char* p) const;
    // Last match among the start positions length - len(p) .. 0, or -1.
    int ReverseFind(const wchar_t* p) const;
    int ReverseFind(const char* p) const;

    // Bytes of the UTF-8 form plus the terminator; -1 if not constructed.
    int GetUTF8Size() const;
    // At most size - 1 bytes, terminated; size 0 writes nothing.
    bool GetUTF8(char* dst, int size) const;
    // UTF-16 units plus the terminator; -1 if not constructed.
    int GetUTF16Size() const;
    // New array of GetUTF16Size() units (release with delete[]), or null.
    char16_t* GetUTF16() const;

private:
    bool Adopt(wchar_t* buffer);

    LmStringImpl* mImpl;
};

} // namespace LmFontEffect

#endif
