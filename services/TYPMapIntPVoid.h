#ifndef TYPMapIntPVoid_H
#define TYPMapIntPVoid_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "TYPTypeTag.h"

// A named map from integer keys to untyped objects, each entry tagged with a
// type text, iterating in ascending key order. Inserting a key that is already
// present keeps the existing entry and answers 0; a caller that allocated the
// rejected object frees it. The map never owns its objects.
//
// Small maps (the relation tables of a component hold a few link types) are a
// sorted vector; a map that grows large out of key order switches to a tree so
// that sorting many entries stays n log n.
class TYPMapIntPVoid {
public:
    struct Entry {
        int key;
        void* object;
        const std::string* tag;
    };

    class const_iterator {
    public:
        // Over the vector, `node` is a value-initialised iterator.
        const_iterator(const TYPMapIntPVoid* map, size_t pos,
                       std::map<int, Entry>::const_iterator node)
            : _map(map), _pos(pos), _node(node) {}
        const Entry& operator*() const { return _map->_tree ? _node->second : _map->_flat[_pos]; }
        const Entry* operator->() const { return &**this; }
        const_iterator& operator++() {
            if (_map->_tree) {
                ++_node;
            } else {
                ++_pos;
            }
            return *this;
        }
        bool operator==(const const_iterator& o) const { return _pos == o._pos && _node == o._node; }
        bool operator!=(const const_iterator& o) const { return !(*this == o); }

    private:
        const TYPMapIntPVoid* _map;
        size_t _pos;
        std::map<int, Entry>::const_iterator _node;
    };

    explicit TYPMapIntPVoid(const char* name = "", int initialSize = 0);
    TYPMapIntPVoid(const TYPMapIntPVoid&) = delete;
    TYPMapIntPVoid& operator=(const TYPMapIntPVoid&) = delete;

    const std::string& name() const { return *_name; }

    int insert(int key, void* object, const char* typeTag = "", int flag = 0);
    // The object under `key`, or null; owned by whoever inserted it (never
    // the map), valid until that owner frees it.
    void* find(int key, const char* typeTag = "") const;
    int erase(int key);
    void clear();
    int size() const { return static_cast<int>(_tree ? _tree->size() : _flat.size()); }
    bool empty() const { return size() == 0; }

    const_iterator begin() const;
    const_iterator end() const;

private:
    static constexpr size_t kFlatLimit = 64;
    static constexpr size_t kExactLimit = 8;

    // The entry of `key`, or null; owned by the map, valid until it changes.
    const Entry* locate(int key) const;

    const std::string* _name;
    using Node = std::map<int, Entry>::const_iterator;
    std::vector<Entry> _flat; // used while there is no tree
    // Once the map went large out of order; absent otherwise, since every
    // component with a relation holds one of these maps.
    std::unique_ptr<std::map<int, Entry>> _tree;
};

#endif
