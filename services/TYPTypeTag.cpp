#include "TYPTypeTag.h"

#include <memory>
#include <unordered_map>

namespace {

struct TagTable {
    std::unordered_map<std::string, std::unique_ptr<std::string>> tags;
};

TagTable& table() {
    static TagTable t;
    return t;
}

} // namespace

const std::string* TYPTypeTag::intern(const char* text) {
    if (!text || !*text) return empty();
    TagTable& t = table();
    auto it = t.tags.find(text);
    if (it == t.tags.end()) {
        auto owned = std::make_unique<std::string>(text);
        it = t.tags.emplace(*owned, std::move(owned)).first;
    }
    return it->second.get();
}

const std::string* TYPTypeTag::empty() {
    static const std::string none;
    return &none;
}
