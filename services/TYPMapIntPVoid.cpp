#include "TYPMapIntPVoid.h"

#include <algorithm>

TYPMapIntPVoid::TYPMapIntPVoid(const char* name, int initialSize) : _name(TYPTypeTag::intern(name)) {
    if (initialSize > 0) _flat.reserve(static_cast<size_t>(std::min<int>(initialSize, kFlatLimit)));
}

const TYPMapIntPVoid::Entry* TYPMapIntPVoid::locate(int key) const {
    if (_tree) {
        auto it = _tree->find(key);
        return it == _tree->end() ? nullptr : &it->second;
    }
    auto it = std::lower_bound(_flat.begin(), _flat.end(), key, [](const Entry& e, int k) { return e.key < k; });
    return (it != _flat.end() && it->key == key) ? &*it : nullptr;
}

int TYPMapIntPVoid::insert(int key, void* object, const char* typeTag, int /*flag*/) {
    Entry entry{key, object, TYPTypeTag::intern(typeTag)};
    if (_tree) return _tree->emplace(key, entry).second ? 1 : 0;
    auto it = std::lower_bound(_flat.begin(), _flat.end(), key, [](const Entry& e, int k) { return e.key < k; });
    if (it != _flat.end() && it->key == key) return 0;
    if (it == _flat.end() || _flat.size() < kFlatLimit) {
        // A component relates through two or three link types: small tables
        // grow one entry at a time instead of doubling.
        if (_flat.size() == _flat.capacity() && _flat.size() < kExactLimit) {
            const auto at = it - _flat.begin();
            _flat.reserve(_flat.size() + 1);
            it = _flat.begin() + at;
        }
        _flat.insert(it, entry);
        return 1;
    }
    // Large and out of order: move to the tree.
    _tree = std::make_unique<std::map<int, Entry>>();
    for (const Entry& e : _flat) _tree->emplace_hint(_tree->end(), e.key, e);
    _flat.clear();
    _flat.shrink_to_fit();
    _tree->emplace(key, entry);
    return 1;
}

void* TYPMapIntPVoid::find(int key, const char* typeTag) const {
    const Entry* e = locate(key);
    if (!e) return nullptr;
    if (typeTag && *typeTag && *e->tag != typeTag) return nullptr;
    return e->object;
}

int TYPMapIntPVoid::erase(int key) {
    if (_tree) {
        const int erased = static_cast<int>(_tree->erase(key));
        // Back to the vector once empty, as a new map would be.
        if (_tree->empty()) _tree.reset();
        return erased;
    }
    auto it = std::lower_bound(_flat.begin(), _flat.end(), key, [](const Entry& e, int k) { return e.key < k; });
    if (it == _flat.end() || it->key != key) return 0;
    _flat.erase(it);
    return 1;
}

void TYPMapIntPVoid::clear() {
    _flat.clear();
    _tree.reset();
}

TYPMapIntPVoid::const_iterator TYPMapIntPVoid::begin() const {
    return _tree ? const_iterator(this, 0, _tree->begin()) : const_iterator(this, 0, Node());
}

TYPMapIntPVoid::const_iterator TYPMapIntPVoid::end() const {
    return _tree ? const_iterator(this, 0, _tree->end()) : const_iterator(this, _flat.size(), Node());
}
