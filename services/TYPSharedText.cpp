#include "TYPSharedText.h"

#include <functional>
#include <memory>
#include <vector>

namespace {

using Node = TYPSharedText::Node;

size_t hashOf(const CATUnicodeString& text) { return std::hash<std::string>()(text.ToLatin1()); }

// Open addressing with linear probing over node pointers, at most three
// quarters full; nodes without a holder are dropped whenever it rebuilds.
class Table {
public:
    const Node* acquire(const CATUnicodeString& text) {
        const size_t hash = hashOf(text);
        if (!_slots.empty()) {
            for (size_t s = hash & mask();; s = (s + 1) & mask()) {
                Node* node = _slots[s];
                if (!node) break;
                if (node->hash == hash && node->text == text) return hold(node);
            }
        }
        if ((_used + 1) * 4 > _slots.size() * 3) rebuild(_used + 1);
        auto* node = new Node{text, hash, 0};
        place(node);
        ++_used;
        ++_idle; // hold() below counts it back
        return hold(node);
    }

    const Node* hold(Node* node) {
        if (node->holders++ == 0) --_idle;
        return node;
    }

    void release(Node* node) {
        if (--node->holders == 0) ++_idle;
    }

    void sweep() { rebuild(_used - _idle); }

    size_t held() const { return _used - _idle; }

    size_t heapBytes() const {
        auto chunk = [](size_t n) -> size_t {
            const size_t size = (n + 8 + 15) & ~size_t(15);
            return n == 0 ? 0 : size < 32 ? 32 : size;
        };
        size_t bytes = chunk(_slots.size() * sizeof(Node*));
        for (const Node* node : _slots) {
            if (!node) continue;
            bytes += chunk(sizeof(Node));
            const size_t length = node->text.ToLatin1().size();
            if (length > 15) bytes += chunk(length + 1);
        }
        return bytes;
    }

private:
    size_t mask() const { return _slots.size() - 1; }

    void place(Node* node) {
        size_t s = node->hash & mask();
        while (_slots[s]) s = (s + 1) & mask();
        _slots[s] = node;
    }

    // Room for `want` held nodes; the idle ones are freed on the way.
    void rebuild(size_t want) {
        size_t size = 16;
        while (want * 4 > size * 3) size <<= 1;
        std::vector<Node*> old(size, nullptr);
        old.swap(_slots);
        _used = 0;
        _idle = 0;
        for (Node* node : old) {
            if (!node) continue;
            if (node->holders == 0) {
                delete node;
                continue;
            }
            place(node);
            ++_used;
        }
    }

    std::vector<Node*> _slots;
    size_t _used = 0; // nodes in the table
    size_t _idle = 0; // of which without a holder
};

Table& table() {
    // Never destroyed: maps and properties kept until the process ends
    // release their texts after every ordinary static is gone.
    static auto* shared = new Table();
    return *shared;
}

} // namespace

const TYPSharedText::Node* TYPSharedText::acquire(const CATUnicodeString& text) { return table().acquire(text); }

const TYPSharedText::Node* TYPSharedText::retain(const Node* node) {
    return node ? table().hold(const_cast<Node*>(node)) : nullptr;
}

void TYPSharedText::release(const Node* node) {
    if (node) table().release(const_cast<Node*>(node));
}

void TYPSharedText::sweep() { table().sweep(); }

size_t TYPSharedText::count() { return table().held(); }

size_t TYPSharedText::heapBytes() { return table().heapBytes(); }
