#include "QELHandleTable.h"

#include <deque>

namespace {

// Handles are dense, so the table is a deque indexed by handle - base; the
// front is dropped as the oldest components go, which keeps it as long as the
// span of live handles.
struct Table {
    std::deque<QELComponent*> slots;
    uint64_t base = 1;
    uint64_t next = 1;
    size_t live = 0;
};

Table& table() {
    // Never destroyed: components freed at exit still leave the table.
    static Table* t = new Table();
    return *t;
}

} // namespace

uint64_t QELHandleTable::add(QELComponent* component) {
    Table& t = table();
    uint64_t h = t.next++;
    t.slots.push_back(component);
    ++t.live;
    return h;
}

void QELHandleTable::remove(uint64_t handle) {
    Table& t = table();
    if (handle < t.base || handle >= t.next) return;
    QELComponent*& slot = t.slots[handle - t.base];
    if (!slot) return;
    slot = nullptr;
    --t.live;
    while (!t.slots.empty() && !t.slots.front()) {
        t.slots.pop_front();
        ++t.base;
    }
}

QELComponent* QELHandleTable::resolve(uint64_t handle) {
    Table& t = table();
    if (handle < t.base || handle >= t.next) return nullptr;
    return t.slots[handle - t.base];
}

bool QELHandleTable::parse(const std::string& token, uint64_t& handle) {
    size_t b = 0, e = token.size();
    while (b < e && (token[b] == ' ' || token[b] == '\t' || token[b] == '\r' || token[b] == '\n')) ++b;
    while (e > b && (token[e - 1] == ' ' || token[e - 1] == '\t' || token[e - 1] == '\r' || token[e - 1] == '\n'))
        --e;
    if (e - b >= 2 && token[b] == '0' && (token[b + 1] == 'x' || token[b + 1] == 'X')) b += 2;
    if (e - b != 16) return false;
    uint64_t h = 0;
    for (size_t i = b; i < e; ++i) {
        char c = token[i];
        unsigned d;
        if (c >= '0' && c <= '9') {
            d = static_cast<unsigned>(c - '0');
        } else if (c >= 'A' && c <= 'F') {
            d = static_cast<unsigned>(c - 'A' + 10);
        } else if (c >= 'a' && c <= 'f') {
            d = static_cast<unsigned>(c - 'a' + 10);
        } else {
            return false;
        }
        h = (h << 4) | d;
    }
    handle = h;
    return true;
}

QELComponent* QELHandleTable::resolve(const std::string& token) {
    uint64_t handle = 0;
    return parse(token, handle) ? resolve(handle) : nullptr;
}

std::string QELHandleTable::format(uint64_t handle) {
    static const char kDigits[] = "0123456789ABCDEF";
    std::string out(16, '0');
    for (int i = 15; i >= 0; --i) {
        out[static_cast<size_t>(i)] = kDigits[handle & 0xF];
        handle >>= 4;
    }
    return out;
}

size_t QELHandleTable::liveCount() { return table().live; }

std::vector<QELComponent*> QELHandleTable::liveComponents() {
    const Table& t = table();
    std::vector<QELComponent*> out;
    out.reserve(t.live);
    for (QELComponent* c : t.slots) {
        if (c) out.push_back(c);
    }
    return out;
}

bool QELHandleTable::restartNumbering() {
    Table& t = table();
    if (t.live != 0) return false;
    t.slots.clear();
    t.base = 1;
    t.next = 1;
    return true;
}
