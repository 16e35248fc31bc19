#include "TYPTypeTag.h"

#include <memory>
#include <string_view>
#include <unordered_map>

namespace {

// Keyed by a view of the interned copy itself, so that a look-up builds no
// string (tags such as "QELRELATIVEOCCURRENCE_CLASSNAME" would allocate).
struct TagTable {
    std::unordered_map<std::string_view, std::unique_ptr<std::string>> tags;
};

TagTable& table() {
    static TagTable t;
    return t;
}

} // namespace

const std::string* TYPTypeTag::intern(const char* text) {
    if (!text || !*text) return empty();
    TagTable& t = table();
    const std::string_view key(text);
    auto it = t.tags.find(key);
    if (it == t.tags.end()) {
        auto owned = std::make_unique<std::string>(key);
        const std::string_view stored(*owned);
        it = t.tags.emplace(stored, std::move(owned)).first;
    }
    return it->second.get();
}

const std::string* TYPTypeTag::empty() {
    static const std::string none;
    return &none;
}
