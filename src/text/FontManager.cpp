#include "text/FontManager.h"

#include "foundation/Error.h"
#include "foundation/List.h"
#include "foundation/LmLog.h"
#include "foundation/LmString.h"
#include "platform/LmPlatformFamily.h"
#include "platform/LmPlatformFont.h"
#include "text/FontEntry.h"
#include "text/LmFontData.h"
#include "text/LmFontFamily.h"
#include "text/LmFontManagerImpl.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace LmFontEffect {

namespace {

const char* const kTag = "LmFontManager";

bool toUtf8(const LmString* s, std::string& out)
{
    if (!s) return false;
    int size = s->GetUTF8Size();
    if (size < 1) return false;
    std::string buffer(size, '\0');
    if (!s->GetUTF8(&buffer[0], size)) return false;
    out.assign(buffer.c_str());
    return true;
}

// Whether `text` holds `needle` starting at index 1 or later: a name that merely begins
// with the suffix does not count.
bool containsAfterStart(const std::string& text, const char* needle)
{
    return text.size() > 1 && text.find(needle, 1) != std::string::npos;
}

const char* forLog(const LmString* s) { return LmLog::ConvertLog(s); }

using Locked = std::lock_guard<std::recursive_mutex>;

// Memory ran out (or a library threw) inside a call: code 1 and the call's failure value.
bool outOfMemory(int site)
{
    Error::Report(kTag, Error::LM_ERR_PLATFORM, site);
    return false;
}

// Reads a whole font file into memory, so that the file changing afterwards cannot reach
// the fonts built over it. A file that cannot be opened still gets a record, so that a path
// that failed once is not tried again; null when memory runs out (tried again next time).
std::shared_ptr<LmFontData> readFontFile(const char* path)
{
    std::shared_ptr<LmFontData> record = std::make_shared<LmFontData>();
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "Failed to open %s as a font", path);
        return record;
    }
    struct stat st;
    if (fstat(fd, &st) != 0) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "Failed to stat font file %s", path);
        close(fd);
        return record;
    }
    // Font data sizes are 32-bit; a larger (or empty) file cannot hold a usable font.
    uint32_t size = (st.st_size > 0 && (uint64_t)st.st_size <= UINT32_MAX) ? (uint32_t)st.st_size : 0;
    char* buffer = size ? new (std::nothrow) char[size] : nullptr;
    if (size && !buffer) {
        close(fd);
        return nullptr;
    }
    uint32_t got = 0;
    while (buffer && got < size) {
        ssize_t n = read(fd, buffer + got, size - got);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break; // the file shrank since fstat: keep what was there
        got += (uint32_t)n;
    }
    close(fd);
    record->buffer = buffer;
    record->size = buffer ? got : 0;
    return record;
}

} // namespace

std::string LmFontManagerImpl::FontKey(const char* name, int index)
{
    std::string key(name);
    key.push_back((char)(unsigned char)('0' + index));
    key.push_back('\0');
    return key;
}

std::string LmFontManagerImpl::PathKey(const char* name)
{
    std::string key(name);
    key.push_back('\0');
    return key;
}

LmFontManagerImpl::~LmFontManagerImpl()
{
    ClearFontMaps();
    ClearFontFamilies();
}

void LmFontManagerImpl::ClearFontMaps()
{
    fontMap.clear();
    fontDataMap.clear();
    totalBufferMB = 0.0;
}

void LmFontManagerImpl::ClearFontFamilies()
{
    if (systemFamilies) {
        int count = systemFamilies->GetCount();
        for (int i = 0; i < count; ++i) delete static_cast<LmFontFamily*>(systemFamilies->Get(i));
        delete systemFamilies;
        systemFamilies = nullptr;
    }
    systemFamiliesSet = false;
}

FontManager* FontManager::GetInstance()
{
    static FontManager instance;
    return &instance;
}

bool FontManager::NoImpl(int site) const
{
    if (impl) return false;
    Error::Report(kTag, Error::LM_ERR_NOT_CONSTRUCTED, site);
    return true;
}

FontManager::FontManager() : impl(new LmFontManagerImpl(this)) {}

FontManager::~FontManager()
{
    LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "~FontManager(%p)", (void*)this);
    delete impl;
}

bool FontManager::IsExisting(const char* name, int index)
try {
    if (NoImpl(__LINE__)) return false;
    Locked lock(impl->mutex);
    if (!name || !*name) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "IsExisting() - path is NULL");
        return false;
    }
    return impl->fontMap.count(LmFontManagerImpl::FontKey(name, index)) != 0;
} catch (...) {
    return outOfMemory(__LINE__);
}

bool FontManager::AddMinikinFont(const char* name, char* data, unsigned size, int index, bool checkExisting)
try {
    // The caller's buffer is this call's from here on, whatever happens.
    std::unique_ptr<char[]> handed(data);
    if (NoImpl(__LINE__)) return false;
    Locked lock(impl->mutex);
    if (!name || !*name) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "AddMinikinFont() - path is NULL");
        return false;
    }
    if (checkExisting && IsExisting(name, index)) return true;

    // The bytes, shared with the font: the caller's buffer or a file's record from the map.
    std::shared_ptr<LmFontData> bytes;
    if (handed) {
        bytes = std::make_shared<LmFontData>(handed.get(), size);
        handed.release();
    } else {
        std::string pathKey = LmFontManagerImpl::PathKey(name);
        auto found = impl->fontDataMap.find(pathKey);
        if (found == impl->fontDataMap.end()) {
            bytes = readFontFile(name);
            if (!bytes) return outOfMemory(__LINE__);
            impl->fontDataMap[pathKey] = bytes;
            double fileMB = bytes->size / 1024000.0;
            impl->totalBufferMB += fileMB;
            if (LmLog::IsAllLogEnable())
                LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "BUFFER TOTAL SIZE(%.2fMB) <- %s(%.2fMB) ",
                             impl->totalBufferMB, name, fileMB);
        } else {
            bytes = found->second;
        }
    }
    if (!bytes->buffer || bytes->size == 0) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "AddMinikinFont() - Fail to get font");
        return false;
    }

    std::shared_ptr<LmPlatformFont> font = LmPlatformFont::MakeFromData(
        reinterpret_cast<const unsigned char*>(bytes->buffer), bytes->size, index, bytes);
    if (!font) {
        LmLog::Print(LmLog::LM_PRIO_ERROR, kTag, "AddMinikinFont() - Fail to create typeface");
        return false;
    }
    // An existing font under the key wins; the new one, and with it a handed buffer, goes.
    impl->fontMap.emplace(LmFontManagerImpl::FontKey(name, index), font);
    return true;
} catch (...) {
    return outOfMemory(__LINE__);
}

bool FontManager::AddMinikinFont(LmString* name, char* data, unsigned size, int index, bool checkExisting)
try {
    std::unique_ptr<char[]> handed(data);
    if (!name) return AddMinikinFont((const char*)nullptr, handed.release(), size, index, checkExisting);
    std::string utf8;
    if (!toUtf8(name, utf8)) return false;
    return AddMinikinFont(utf8.c_str(), handed.release(), size, index, checkExisting);
} catch (...) {
    return outOfMemory(__LINE__);
}

bool FontManager::GetMinikinFont(std::shared_ptr<LmPlatformFont>& out, LmString* name, int index)
try {
    if (NoImpl(__LINE__)) return false;
    Locked lock(impl->mutex);
    std::string utf8;
    if (!toUtf8(name, utf8)) return false;
    auto found = impl->fontMap.find(LmFontManagerImpl::FontKey(utf8.c_str(), index));
    if (found == impl->fontMap.end()) return false;
    out = found->second;
    return true;
} catch (...) {
    return outOfMemory(__LINE__);
}

bool FontManager::BuildMinikinFamily(LmFontFamily* family)
{
    if (NoImpl(__LINE__)) return false;
    Locked lock(impl->mutex);
    if (!family || !family->fonts) return false;
    int count = family->fonts->GetCount();
    if (count < 1) return false;
    for (int i = 0; i < count; ++i) {
        FontEntry* entry = static_cast<FontEntry*>(family->fonts->Get(i));
        if (!entry || !AddMinikinFont(entry->path, nullptr, 0, entry->ttcIndex, false)) return false;
    }
    return true;
}

bool FontManager::LoadMinikinFontFamily(unsigned localeListId)
{
    if (NoImpl(__LINE__)) return false;
    Locked lock(impl->mutex);
    List* families = impl->systemFamilies;
    if (!families) return false;
    int count = families->GetCount();
    for (int i = 0; i < count; ++i) {
        LmFontFamily* family = static_cast<LmFontFamily*>(families->Get(i));
        if (family && !family->loaded && family->localeListId == localeListId) {
            Error::SetError(Error::LM_ERR_NONE);
            family->loaded = BuildMinikinFamily(family);
            // Memory running out fails the call; the family is tried again next time.
            return family->loaded || Error::GetError() != Error::LM_ERR_PLATFORM;
        }
    }
    return false;
}

bool FontManager::SetSystemFontFamilies(List* families)
{
    if (NoImpl(__LINE__)) return false;
    Locked lock(impl->mutex);
    // A null list is nothing to take: the families stay unset.
    if (!impl->systemFamiliesSet && families) {
        impl->ClearFontFamilies();
        impl->systemFamilies = families;
        impl->systemFamiliesSet = true;
    }
    return true;
}

bool FontManager::IsSystemFontFamiliesAlreadySet()
{
    if (NoImpl(__LINE__)) return false;
    Locked lock(impl->mutex);
    return impl->systemFamiliesSet;
}

List* FontManager::GetSystemFontFamilies()
{
    if (NoImpl(__LINE__)) return nullptr;
    Locked lock(impl->mutex);
    return impl->systemFamilies;
}

bool FontManager::GetMinikinFontFamilies(LmString* familyName,
                                         std::vector<std::shared_ptr<LmPlatformFamily>>& families,
                                         LmString* userFont, int& weight)
try {
    if (NoImpl(__LINE__)) return false;
    Locked lock(impl->mutex);
    bool verbose = LmLog::IsAllLogEnable();
    if (verbose) {
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "GetMinikinFontFamilies >>> GetMinikinFontFamilies");
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "GetMinikinFontFamilies - userFont[%s]", forLog(userFont));
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "GetMinikinFontFamilies - familyFont[%s]", forLog(familyName));
    }

    std::string user;
    if (userFont && toUtf8(userFont, user)) {
        bool italic = containsAfterStart(user, "-Italic");
        if (!italic) {
            if (containsAfterStart(user, "-Thin"))
                weight = 100;
            else if (containsAfterStart(user, "-Light"))
                weight = 300;
            else if (containsAfterStart(user, "-Medium"))
                weight = (familyName && familyName->CompareTo("qvx-roboto-light") == 0) ? 700 : 500;
            else if (containsAfterStart(user, "-Black"))
                weight = 900;
            else if (containsAfterStart(user, "-Bold"))
                weight = 700;
        }
        // The system families already serve the system's own Roboto files.
        std::shared_ptr<LmPlatformFont> font;
        if (user.find("/system/fonts/Roboto-") == std::string::npos && GetMinikinFont(font, userFont, 0)) {
            std::vector<LmStyledFont> fonts;
            fonts.emplace_back(font, weight, italic);
            families.push_back(std::make_shared<LmPlatformFamily>(0, 0, std::move(fonts)));
        }
    }

    List* system = impl->systemFamilies;
    int familyCount = system ? system->GetCount() : 0;
    for (int i = 0; i < familyCount; ++i) {
        LmFontFamily* family = static_cast<LmFontFamily*>(system->Get(i));
        if (!family || !family->loaded || !family->fonts) continue;
        std::vector<LmStyledFont> fonts;
        int entryCount = family->fonts->GetCount();
        for (int j = 0; j < entryCount; ++j) {
            FontEntry* entry = static_cast<FontEntry*>(family->fonts->Get(j));
            std::shared_ptr<LmPlatformFont> font;
            if (entry && GetMinikinFont(font, entry->path, entry->ttcIndex))
                fonts.emplace_back(font, entry->weight, entry->italic);
        }
        if (!fonts.empty())
            families.push_back(
                std::make_shared<LmPlatformFamily>(family->localeListId, family->variant, std::move(fonts)));
    }
    if (verbose && familyCount > 0)
        LmLog::Print(LmLog::LM_PRIO_DEBUG, kTag, "GetMinikinFontFamilies <<< GetMinikinFontFamilies");
    return true;
} catch (...) {
    return outOfMemory(__LINE__);
}

void FontManager::ClearFontMaps()
{
    if (NoImpl(__LINE__)) return;
    Locked lock(impl->mutex);
    impl->ClearFontMaps();
}

void FontManager::ClearFontFamilies()
{
    if (NoImpl(__LINE__)) return;
    Locked lock(impl->mutex);
    impl->ClearFontFamilies();
}

} // namespace LmFontEffect
