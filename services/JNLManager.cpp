#include "JNLManager.h"

#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "UTILSink.h"

namespace {

// Never destroyed: components freed during static destruction may still write
// to the journal, and it must outlive them. It stays reachable through this
// pointer, so the leak checker does not count it.
struct Journal {
    UTILSinkOutput output{"QEL_JOURNAL"};
    JNLEntryList entries;
    std::size_t maxEntries = JNLManager::kDefaultMaxEntries;
};

Journal& journal() {
    static auto* j = new Journal();
    return *j;
}

} // namespace

// Every entry is written straight into the journal's text; this closes it,
// copies it out, and keeps memory bounded: past maxEntries() entries, the
// oldest half is dropped at once, which keeps the cost of dropping amortised
// constant per entry.
void JNLManager::closeEntry() {
    Journal& j = journal();
    const std::string_view entry = j.entries.close();
    if (j.output.active()) j.output.writeLine(entry);
    if (j.entries.size() > j.maxEntries) j.entries.dropOldest(j.maxEntries / 2);
}

void JNLManager::record(std::string_view text) {
    journal().entries.text().append(text);
    closeEntry();
}

void JNLManager::recordBegin(std::string_view function, std::string_view detail) {
    std::string& text = journal().entries.text();
    text.append("BEGIN ").append(function);
    if (!detail.empty()) text.append(" : ").append(detail);
    closeEntry();
}

void JNLManager::recordEnd(std::string_view function, long returnCode) {
    char code[24];
    const std::size_t digits = static_cast<std::size_t>(std::to_chars(code, code + sizeof code, returnCode).ptr - code);
    journal().entries.text().append("END ").append(function).append(" (").append(code, digits) += ')';
    closeEntry();
}

void JNLManager::writeMsg(const CATUnicodeString& text) { record(text.ToLatin1()); }

void JNLManager::writeMsg(const char* text) { record(text ? std::string_view(text) : std::string_view()); }

void JNLManager::writeMsgFormatted(const char* format, ...) {
    if (!format) return;
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    // Most lines fit the buffer: one formatting pass, no allocation.
    char buffer[512];
    const int length = std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    std::string& text = journal().entries.text();
    if (length < 0) {
        // An encoding error of the arguments: keep the format so the line is not lost.
        text.append(format);
    } else if (static_cast<std::size_t>(length) < sizeof buffer) {
        text.append(buffer, static_cast<std::size_t>(length));
    } else {
        const std::size_t start = text.size();
        text.resize(start + static_cast<std::size_t>(length) + 1);
        std::vsnprintf(&text[start], static_cast<std::size_t>(length) + 1, format, again);
        text.resize(start + static_cast<std::size_t>(length));
    }
    va_end(again);
    closeEntry();
}

void JNLManager::beginFunction(const CATUnicodeString& function, const CATUnicodeString& detail) {
    recordBegin(function.ToLatin1(), detail.ToLatin1());
}

void JNLManager::beginFunction(const char* function, const char* detail) {
    recordBegin(function ? function : "", detail ? detail : "");
}

void JNLManager::endFunction(const CATUnicodeString& function, long returnCode) {
    recordEnd(function.ToLatin1(), returnCode);
}

void JNLManager::endFunction(const char* function, long returnCode) { recordEnd(function ? function : "", returnCode); }

const JNLEntryList& JNLManager::entries() { return journal().entries; }

void JNLManager::clear() { journal().entries.clear(); }

bool JNLManager::contains(const std::string& text) {
    for (const std::string_view entry : journal().entries) {
        if (entry.find(text) != std::string::npos) return true;
    }
    return false;
}

bool JNLManager::setOutputPath(const CATUnicodeString& path) { return journal().output.open(path.ToLatin1()); }

// Below 2 the drop-half rule would keep nothing.
void JNLManager::setMaxEntries(std::size_t maxEntries) {
    journal().maxEntries = maxEntries == 0 ? kDefaultMaxEntries : (maxEntries < 2 ? 2 : maxEntries);
}

std::size_t JNLManager::maxEntries() { return journal().maxEntries; }

void JNLManager::resetOutput() { journal().output.reset(); }

std::string_view JNLEntryList::close() {
    const std::size_t start = _ends.empty() ? 0 : _ends.back();
    _ends.push_back(_text.size());
    return std::string_view(_text).substr(start);
}

void JNLEntryList::dropOldest(std::size_t keep) {
    if (keep >= _ends.size()) return;
    const std::size_t drop = _ends.size() - keep;
    const std::size_t cut = _ends[drop - 1];
    _text.erase(0, cut);
    _ends.erase(_ends.begin(), _ends.begin() + static_cast<std::ptrdiff_t>(drop));
    for (std::size_t& end : _ends) end -= cut;
}

void JNLEntryList::clear() {
    _text.clear();
    _ends.clear();
}

bool operator==(const JNLEntryList& entries, const std::vector<std::string>& texts) {
    if (entries.size() != texts.size()) return false;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (entries[i] != texts[i]) return false;
    }
    return true;
}
