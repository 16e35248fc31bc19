#include "JNLManager.h"

#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "UTILSink.h"

namespace {

// Never destroyed: components freed during static destruction may still write
// to the journal, and the sink must outlive them. It stays reachable through
// this pointer, so the leak checker does not count it.
UTILSink<std::string>& sink() {
    static auto* s = new UTILSink<std::string>("QEL_JOURNAL", JNLManager::kDefaultMaxEntries);
    return *s;
}

void record(std::string text) {
    sink().record(std::move(text), [](const std::string& entry) { return std::string_view(entry); });
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

const std::vector<std::string>& JNLManager::entries() { return sink().entries(); }

void JNLManager::clear() { sink().clear(); }

bool JNLManager::contains(const std::string& text) {
    for (const std::string& entry : sink().entries()) {
        if (entry.find(text) != std::string::npos)
            return true;
    }
    return false;
}

bool JNLManager::setOutputPath(const CATUnicodeString& path) { return sink().setOutputPath(path.ToLatin1()); }

void JNLManager::setMaxEntries(std::size_t maxEntries) { sink().setMaxEntries(maxEntries); }

std::size_t JNLManager::maxEntries() { return sink().maxEntries(); }

void JNLManager::resetOutput() { sink().resetOutput(); }
