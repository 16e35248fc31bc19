#include "JNLManager.h"

#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

struct JournalState {
    std::vector<std::string> entries;
    std::size_t maxEntries = JNLManager::kDefaultMaxEntries;
    // The copy of each entry outside memory; stderr, a file we opened, or null.
    FILE* output = nullptr;
    bool outputChosen = false;
};

// Never destroyed: components freed during static destruction may still write
// to the journal, and the state must outlive them. It stays reachable through
// this pointer, so the leak checker does not count it.
JournalState& state() {
    static JournalState* s = new JournalState;
    return *s;
}

void closeOutput(JournalState& s) {
    if (s.output && s.output != stderr)
        std::fclose(s.output);
    s.output = nullptr;
}

bool openOutput(JournalState& s, const std::string& path) {
    closeOutput(s);
    s.outputChosen = true;
    if (path.empty())
        return true;
    if (path == "-") {
        s.output = stderr;
        return true;
    }
    s.output = std::fopen(path.c_str(), "a");
    return s.output != nullptr;
}

void chooseOutputFromEnvironment(JournalState& s) {
    if (s.outputChosen)
        return;
    const char* path = std::getenv("QEL_JOURNAL");
    if (!openOutput(s, path ? path : "")) {
        std::fprintf(stderr, "QEL_JOURNAL: cannot open %s for appending\n", path);
    }
}

void record(std::string text) {
    JournalState& s = state();
    chooseOutputFromEnvironment(s);
    if (s.output) {
        std::fwrite(text.data(), 1, text.size(), s.output);
        std::fputc('\n', s.output);
        // Flushed line by line so that the trace of a run that crashes is whole.
        std::fflush(s.output);
    }
    s.entries.push_back(std::move(text));
    if (s.entries.size() > s.maxEntries) {
        // Dropping half at once keeps the cost of the front erase amortised
        // constant per entry.
        std::size_t drop = s.entries.size() - s.maxEntries / 2;
        s.entries.erase(s.entries.begin(), s.entries.begin() + static_cast<std::ptrdiff_t>(drop));
    }
}

void recordBegin(std::string_view function, std::string_view detail) {
    std::string text;
    text.reserve(6 + function.size() + (detail.empty() ? 0 : 3 + detail.size()));
    text.append("BEGIN ").append(function);
    if (!detail.empty())
        text.append(" : ").append(detail);
    record(std::move(text));
}

void recordEnd(std::string_view function, long returnCode) {
    char code[24];
    const std::size_t digits = static_cast<std::size_t>(std::to_chars(code, code + sizeof code, returnCode).ptr - code);
    std::string text;
    text.reserve(4 + function.size() + 3 + digits);
    text.append("END ").append(function).append(" (").append(code, digits) += ')';
    record(std::move(text));
}

} // namespace

void JNLManager::writeMsg(const CATUnicodeString& text) { record(text.ToLatin1()); }

void JNLManager::writeMsg(const char* text) { record(text ? text : ""); }

void JNLManager::writeMsgFormatted(const char* format, ...) {
    if (!format)
        return;
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    // Most lines fit the buffer: one formatting pass, one allocation.
    char buffer[512];
    const int length = std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    std::string text;
    if (length < 0) {
        // An encoding error of the arguments: keep the format so the line is not lost.
        text = format;
    } else if (static_cast<std::size_t>(length) < sizeof buffer) {
        text.assign(buffer, static_cast<std::size_t>(length));
    } else {
        text.resize(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(&text[0], text.size(), format, again);
        text.resize(static_cast<std::size_t>(length));
    }
    va_end(again);
    record(std::move(text));
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

const std::vector<std::string>& JNLManager::entries() { return state().entries; }

void JNLManager::clear() { state().entries.clear(); }

bool JNLManager::contains(const std::string& text) {
    for (const std::string& entry : state().entries) {
        if (entry.find(text) != std::string::npos)
            return true;
    }
    return false;
}

bool JNLManager::setOutputPath(const CATUnicodeString& path) {
    return openOutput(state(), path.ToLatin1());
}

void JNLManager::setMaxEntries(std::size_t maxEntries) {
    JournalState& s = state();
    // Below 2 the drop-half rule would keep nothing.
    s.maxEntries = maxEntries == 0 ? kDefaultMaxEntries : (maxEntries < 2 ? 2 : maxEntries);
}

std::size_t JNLManager::maxEntries() { return state().maxEntries; }

void JNLManager::resetOutput() {
    closeOutput(state());
    state().outputChosen = false;
}
