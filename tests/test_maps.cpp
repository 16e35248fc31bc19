#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPMapIntPVoid.h"
#include "TYPSharedText.h"
#include "TYPTypeTag.h"

namespace {
void* obj(intptr_t i) { return reinterpret_cast<void*>(i); }
CATUnicodeString key(int i) { return CATUnicodeString("k") + CATUnicodeString(std::to_string(i)); }
} // namespace

TEST(TYPMapCATUnicodeStringPVoid, KeepsInsertionOrderAndFirstEntryOfAKey) {
    TYPMapCATUnicodeStringPVoid m("MAP");
    EXPECT_EQ(m.name(), "MAP");
    EXPECT_EQ(m.insert("b", obj(1), "T"), 1);
    EXPECT_EQ(m.insert("a", obj(2), "T"), 1);
    EXPECT_EQ(m.insert("b", obj(3), "T"), 0);
    EXPECT_EQ(m.size(), 2);
    EXPECT_EQ(m.find("b"), obj(1));
    EXPECT_EQ(m.find("b", "T"), obj(1));
    EXPECT_EQ(m.find("b", "Other"), nullptr);
    EXPECT_EQ(*m.getKey(0), CATUnicodeString("b"));
    EXPECT_EQ(m.getObject(1), obj(2));
    EXPECT_EQ(m.getObject(2), nullptr);
    EXPECT_EQ(m.getObject(-1), nullptr);
    // Every index in range answers its tag, the first one too.
    ASSERT_NE(m.getTag(0), nullptr);
    EXPECT_EQ(*m.getTag(0), "T");
    EXPECT_EQ(m.getTag(2), nullptr);
    EXPECT_EQ(m.getTag(-1), nullptr);
    EXPECT_EQ(m.getKey(-1), nullptr);
}

TEST(TYPMapCATUnicodeStringPVoid, EraseThenReinsertMovesToTheEndAtEverySize) {
    for (int n : {3, 8, 9, 100}) {
        TYPMapCATUnicodeStringPVoid m;
        for (int i = 0; i < n; ++i) m.insert(key(i), obj(i + 1));
        EXPECT_EQ(m.erase(key(1)), 1);
        EXPECT_EQ(m.erase(key(1)), 0);
        EXPECT_EQ(m.find(key(1)), nullptr);
        m.insert(key(1), obj(1000));
        ASSERT_EQ(m.size(), n);
        EXPECT_EQ(m.getObject(n - 1), obj(1000)) << n;
        EXPECT_EQ(m.getObject(1), n > 2 ? obj(3) : obj(1000)) << n;
        std::vector<void*> walked;
        for (const auto& e : m) walked.push_back(e.object);
        EXPECT_EQ(walked.size(), static_cast<size_t>(n));
        EXPECT_EQ(walked.back(), obj(1000));
        for (int i = 0; i < n; ++i) EXPECT_NE(m.find(key(i)), nullptr) << i;
    }
}

TEST(TYPMapCATUnicodeStringPVoid, IterationSkipsEntriesErasedDuringTheWalk) {
    TYPMapCATUnicodeStringPVoid m;
    for (int i = 0; i < 20; ++i) m.insert(key(i), obj(i + 1));
    int seen = 0;
    for (const auto& e : m) {
        ++seen;
        if (e.key == key(0)) {
            for (int i = 1; i < 20; i += 2) m.erase(key(i));
        }
    }
    EXPECT_EQ(seen, 10);
    EXPECT_EQ(m.size(), 10);
}

TEST(TYPMapCATUnicodeStringPVoid, ManyErasuresAndInsertionsStayConsistent) {
    TYPMapCATUnicodeStringPVoid m;
    std::mt19937 rng(7);
    std::map<int, bool> present;
    for (int round = 0; round < 20000; ++round) {
        int k = static_cast<int>(rng() % 500);
        if (rng() % 3 == 0) {
            EXPECT_EQ(m.erase(key(k)), present[k] ? 1 : 0);
            present[k] = false;
        } else {
            EXPECT_EQ(m.insert(key(k), obj(k + 1)), present[k] ? 0 : 1);
            present[k] = true;
        }
    }
    int expected = 0;
    for (auto& p : present) {
        if (p.second) {
            ++expected;
            EXPECT_EQ(m.find(key(p.first)), obj(p.first + 1));
        }
    }
    EXPECT_EQ(m.size(), expected);
}

// The lookup by text must agree with the lookup by CATUnicodeString in both
// forms of the map (a short list, a hash table with tombstones), and must not
// take a key with code points above 0xFF for its '?' stand-ins.
TEST(TYPMapCATUnicodeStringPVoid, TextKeysFindWhatCATUnicodeStringKeysFind) {
    for (int size : {3, 40}) {
        SCOPED_TRACE(size);
        TYPMapCATUnicodeStringPVoid m;
        CATUnicodeString wide;
        wide.BuildFromCodePoints(U"\u0100x");
        ASSERT_EQ(wide.ToLatin1(), "?x");
        m.insert(wide, obj(1000));
        for (int k = 0; k < size; ++k) m.insert(key(k), obj(k + 1));
        for (int k = 0; k < size; k += 2) m.erase(key(k));
        for (int k = 0; k < size + 5; ++k)
            EXPECT_EQ(m.find(key(k).ConvertToChar()), m.find(key(k))) << k;
        EXPECT_EQ(m.find("?x"), nullptr);
        EXPECT_EQ(m.find(wide), obj(1000));
        EXPECT_EQ(m.find(static_cast<const char*>(nullptr)), m.find(CATUnicodeString()));
    }
}

// Negative keys sort first.
TEST(TYPMapIntPVoid, IteratesInAscendingKeyOrderInBothForms) {
    for (int n : {10, 1000}) {
        TYPMapIntPVoid m("sort");
        std::vector<int> keys;
        for (int i = 0; i < n; ++i) keys.push_back((i * 7919) % n - n / 2);
        for (int k : keys) EXPECT_EQ(m.insert(k, obj(k + n)), 1);
        EXPECT_EQ(m.insert(keys[3], obj(99999)), 0);
        EXPECT_EQ(m.size(), n);
        int expect = -n / 2;
        for (const auto& e : m) {
            EXPECT_EQ(e.key, expect);
            EXPECT_EQ(e.object, obj(expect + n));
            ++expect;
        }
        EXPECT_EQ(expect, n - n / 2);
        EXPECT_EQ(m.find(keys[3]), obj(keys[3] + n));
        EXPECT_EQ(m.erase(-1), 1);
        EXPECT_EQ(m.find(-1), nullptr);
        EXPECT_EQ(m.size(), n - 1);
    }
}

TEST(TYPTypeTag, OneCopyPerTextWhateverTheBuffer) {
    // Long enough that a std::string of it lives on the heap.
    std::string first = "QELRELATIVEOCCURRENCE_CLASSNAME";
    std::string second = first;
    const std::string* tag = TYPTypeTag::intern(first.c_str());
    first.assign(first.size(), 'x'); // the interned copy must not follow its source
    EXPECT_EQ(*tag, "QELRELATIVEOCCURRENCE_CLASSNAME");
    EXPECT_EQ(TYPTypeTag::intern(second.c_str()), tag);
    EXPECT_NE(TYPTypeTag::intern("QELRELATIVEOCCURRENCE_CLASSNAMF"), tag);
    EXPECT_EQ(TYPTypeTag::intern(nullptr), TYPTypeTag::empty());
    EXPECT_EQ(TYPTypeTag::intern(""), TYPTypeTag::empty());
}

// One entry lives inside the map, more in an array, past eight with an index:
// every transition must keep order, keys and the shared copies' holders.
TEST(TYPMapCATUnicodeStringPVoid, GrowsShrinksAndRefillsThroughEveryLayout) {
    const size_t before = TYPSharedText::count();
    for (int n : {1, 2, 5, 9, 40}) {
        SCOPED_TRACE(n);
        TYPMapCATUnicodeStringPVoid m;
        for (int round = 0; round < 2; ++round) { // the second after clear()
            for (int i = 0; i < n; ++i) EXPECT_EQ(m.insert(key(i), obj(i + 1)), 1);
            EXPECT_EQ(TYPSharedText::count(), before + n);
            for (int i = 0; i < n; i += 2) EXPECT_EQ(m.erase(key(i)), 1);
            EXPECT_EQ(TYPSharedText::count(), before + n / 2);
            int index = 0;
            for (int i = 1; i < n; i += 2, ++index) {
                EXPECT_EQ(*m.getKey(index), key(i));
                EXPECT_EQ(m.find(key(i).ConvertToChar()), obj(i + 1));
            }
            EXPECT_EQ(m.size(), index);
            m.clear();
            EXPECT_EQ(m.find(key(1)), nullptr);
            EXPECT_EQ(m.first(), nullptr);
        }
    }
    EXPECT_EQ(TYPSharedText::count(), before);
}

TEST(TYPSharedText, OneNodePerTextHeldUntilItsLastHolderAndFreedBySweep) {
    const size_t before = TYPSharedText::count();
    std::vector<const TYPSharedText::Node*> nodes;
    // Past several rebuilds of the table, with an entry taken twice.
    for (int i = 0; i < 5000; ++i) nodes.push_back(TYPSharedText::acquire(key(i) + "_shared_text_long"));
    EXPECT_EQ(TYPSharedText::acquire(key(7) + "_shared_text_long"), nodes[7]);
    EXPECT_EQ(TYPSharedText::count(), before + 5000);
    for (int i = 0; i < 5000; ++i) {
        EXPECT_EQ(nodes[i]->text, key(i) + "_shared_text_long") << i;
        TYPSharedText::release(nodes[i]);
    }
    // One holder is left on the seventh; the rest are idle, then gone.
    EXPECT_EQ(TYPSharedText::count(), before + 1);
    EXPECT_EQ(TYPSharedText::acquire(key(9) + "_shared_text_long"), nodes[9]); // idle, taken again
    TYPSharedText::release(nodes[9]);
    TYPSharedText::sweep();
    EXPECT_EQ(nodes[7]->text, key(7) + "_shared_text_long");
    TYPSharedText::release(nodes[7]);
    TYPSharedText::sweep();
    EXPECT_EQ(TYPSharedText::count(), before);
}
