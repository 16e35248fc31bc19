#ifndef TYPSharedText_H
#define TYPSharedText_H

#include <cstddef>

#include "CATUnicodeString.h"

// One counted copy per distinct text, shared by every holder: the keys of the
// relation maps, component names and property names repeat the same few
// hundred thousand texts millions of times over.
//
// A holder acquires a node and releases it when done. A node nobody holds any
// more stays in the table until the table next rebuilds (or sweep()), so that
// a text dropped and taken again at once (a map cleared and refilled) costs no
// allocation.
class TYPSharedText {
public:
    struct Node {
        CATUnicodeString text;
        size_t hash; // std::hash of the ISO-8859-1 form, as CATUnicodeStringHash
        size_t holders;
    };

    // The node of `text` with one holder more: owned by the table, valid until
    // the caller's matching release().
    static const Node* acquire(const CATUnicodeString& text);
    // One holder more on a node already held.
    static const Node* retain(const Node* node);
    // One holder less; null is ignored.
    static void release(const Node* node);
    // Frees every node without a holder.
    static void sweep();
    // Nodes with a holder, and the table's heap (nodes, texts, slots) in
    // glibc chunks, for the census.
    static size_t count();
    static size_t heapBytes();
};

#endif
