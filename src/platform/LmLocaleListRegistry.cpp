#include "platform/LmLocaleListRegistry.h"

#include <map>
#include <mutex>

namespace LmFontEffect {

namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string, uint32_t> ids;
    std::vector<std::vector<std::string>> lists;  // index = id - 1
};

Registry& registry()
{
    static Registry r;
    return r;
}

std::vector<std::string> splitTags(const char* tags)
{
    std::vector<std::string> out;
    std::string cur;
    for (const char* p = tags; *p; p++) {
        const char c = *p;
        if (c == ',' || c == ' ' || c == '\t' || c == '\n' || c == '\r') {
            if (!cur.empty()) out.push_back(cur);
            cur.clear();
        } else {
            cur += c;
        }
    }
    if (!cur.empty()) out.push_back(cur);
    return out;
}

} // namespace

uint32_t LmLocaleListRegistry::registerLocaleList(const char* tags)
{
    if (!tags) return 0;
    std::vector<std::string> list = splitTags(tags);
    if (list.empty()) return 0;
    std::string key;
    for (const std::string& t : list) {
        if (!key.empty()) key += ',';
        key += t;
    }
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    auto it = r.ids.find(key);
    if (it != r.ids.end()) return it->second;
    r.lists.push_back(std::move(list));
    const uint32_t id = (uint32_t)r.lists.size();
    r.ids.emplace(key, id);
    return id;
}

std::vector<std::string> LmLocaleListRegistry::getLocales(uint32_t id)
{
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    if (id == 0 || id > r.lists.size()) return {};
    return r.lists[id - 1];
}

} // namespace LmFontEffect
