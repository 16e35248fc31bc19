#ifndef JNLEntryList_H
#define JNLEntryList_H

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

// The journal's entries held in memory, in order, read as views.
//
// A long reading writes millions of entries: they are appended one after the
// other into one text, with the end of each kept, rather than each in a string
// of its own, so that an entry costs no allocation of its own. A view answered
// is valid until the next entry is written or the entries are cleared.
class JNLEntryList {
public:
    class const_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = std::string_view;
        using difference_type = std::ptrdiff_t;
        using pointer = const std::string_view*;
        using reference = std::string_view;

        const_iterator(const JNLEntryList* list, std::size_t index) : _list(list), _index(index) {}
        std::string_view operator*() const { return (*_list)[_index]; }
        const_iterator& operator++() {
            ++_index;
            return *this;
        }
        bool operator==(const const_iterator& other) const { return _index == other._index; }
        bool operator!=(const const_iterator& other) const { return _index != other._index; }

    private:
        const JNLEntryList* _list;
        std::size_t _index;
    };
    using iterator = const_iterator;
    using value_type = std::string_view;

    std::size_t size() const { return _ends.size(); }
    bool empty() const { return _ends.empty(); }
    std::string_view operator[](std::size_t index) const {
        const std::size_t start = index == 0 ? 0 : _ends[index - 1];
        return std::string_view(_text).substr(start, _ends[index] - start);
    }
    const_iterator begin() const { return const_iterator(this, 0); }
    const_iterator end() const { return const_iterator(this, _ends.size()); }
    std::vector<std::string> toStrings() const { return std::vector<std::string>(begin(), end()); }

private:
    friend class JNLManager;

    // The entry being written is appended to the text (text()), then closed:
    // close answers its text.
    std::string& text() { return _text; }
    std::string_view close();
    // Keeps the newest `keep` entries.
    void dropOldest(std::size_t keep);
    void clear();

    std::string _text;
    std::vector<std::size_t> _ends;
};

bool operator==(const JNLEntryList& entries, const std::vector<std::string>& texts);
inline bool operator==(const std::vector<std::string>& texts, const JNLEntryList& entries) { return entries == texts; }
inline bool operator!=(const JNLEntryList& entries, const std::vector<std::string>& texts) {
    return !(entries == texts);
}
inline bool operator!=(const std::vector<std::string>& texts, const JNLEntryList& entries) {
    return !(entries == texts);
}

#endif
