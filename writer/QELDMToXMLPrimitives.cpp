// XML output primitives and header of the description writer.

#include "QELDMToXML.h"
#include "QELElementNames.h"

#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <array>
#include <charconv>
#include <cstring>

#include "CATDocument.h"
#include "CV5CAAQELSession.h"
#include "CV5CAAToolsCommon.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELComponent.h"
#include "QELSession.h"
#include "UTILFile.h"

namespace {

const long kWriteFailed = 2102;

// Appends `format` formatted with `args` to `out`. The first attempt uses the
// room the string already has, so that the usual short line is formatted once.
void appendFormatted(std::string& out, const char* format, va_list args) {
    const size_t start = out.size();
    size_t room = out.capacity() - start;
    if (room < 128) room = 128;
    out.resize(start + room);
    va_list attempt;
    va_copy(attempt, args);
    int n = std::vsnprintf(&out[start], room, format, attempt);
    va_end(attempt);
    if (n < 0) {
        // An encoding error: nothing of this write is kept.
        out.resize(start);
        return;
    }
    if (static_cast<size_t>(n) >= room) {
        out.resize(start + static_cast<size_t>(n) + 1);
        va_list retry;
        va_copy(retry, args);
        std::vsnprintf(&out[start], static_cast<size_t>(n) + 1, format, retry);
        va_end(retry);
    }
    out.resize(start + static_cast<size_t>(n));
}

// Turns every LF from `from` on into CR LF, in place, in one pass from the
// end: the line end of the description whatever the platform's text mode.
void expandLineEnds(std::string& text, size_t from) {
    size_t count = 0;
    for (size_t i = from; i < text.size(); ++i)
        if (text[i] == '\n') ++count;
    if (count == 0) return;
    size_t read = text.size();
    text.resize(text.size() + count);
    size_t write = text.size();
    while (read > from) {
        char c = text[--read];
        text[--write] = c;
        if (c == '\n') text[--write] = '\r';
    }
}

// Hands `text` to the file's descriptor in one write system call (more only
// when the system takes part of it): that is the flush after every write.
// Nothing goes through the stream's own buffer, which is therefore always
// empty; copying each line through stdio only to flush it at once cost the
// writer about 30 % of its instructions. Answers the call that failed, or null.
const char* writeOut(FILE* file, const char* text, size_t size) {
    const int fd = fileno(file);
    size_t done = 0;
    while (done < size) {
        ssize_t n = ::write(fd, text + done, size - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            if (n == 0) errno = EIO;
            return "write";
        }
        done += static_cast<size_t>(n);
    }
    return nullptr;
}

const char* writeOut(FILE* file, const std::string& text) { return writeOut(file, text.data(), text.size()); }

// A handle as 16 upper-case hexadecimal digits ("%016llX").
std::array<char, 17> hexadecimal(unsigned long long value) {
    static const char kDigits[] = "0123456789ABCDEF";
    std::array<char, 17> text{};
    for (int i = 15; i >= 0; --i, value >>= 4) text[static_cast<size_t>(i)] = kDigits[value & 0xF];
    return text;
}

} // namespace

QELDMToXML::QELDMToXML(const char* path)
    : _file(nullptr), _declaredElements(0), _writtenItems(0), _failed(false), _failureReason(0) {
    openFile(path);
}

QELDMToXML::~QELDMToXML() {
    if (_file) closeFile("QELDMToXML::~QELDMToXML");
}

// Binary mode: the CR LF line ends are written explicitly. A stream still
// held is closed first rather than leaked; the counters stay, as a caller
// that points the writer at another file expects. The new path names the
// file in any later failure report.
void QELDMToXML::openFile(const char* path) {
    if (_file) closeFile("QELDMToXML::openFile");
    _path = path ? path : "";
    _failed = false;
    _failureReason = 0;
    _buffer.clear();
    if (!path) {
        errno = EINVAL;
        reportFailure("QELDMToXML::openFile", "fopen");
        return;
    }
    _file = std::fopen(path, "wb");
    if (!_file) {
        reportFailure("QELDMToXML::openFile", "fopen");
        return;
    }
}

void QELDMToXML::writeFormatted(bool flush, const char* format, ...) {
    if (!_file || _failed) return;
    // Unflushed lines stay at the front of _buffer and leave with the next
    // flushed write, in the same system call.
    const size_t start = _buffer.size();
    va_list args;
    va_start(args, format);
    appendFormatted(_buffer, format, args);
    va_end(args);
    expandLineEnds(_buffer, start);
    if (!flush) return;
    const char* failed = writeOut(_file, _buffer);
    if (failed) reportFailure("QELDMToXML::writeFormatted", failed);
    _buffer.clear();
}

void QELDMToXML::writeLine(std::string_view before, const char* text, std::string_view after) {
    if (!_file || _failed) return;
    // One scan finds both the first LF and the end of the text.
    const char* stop = strchrnul(text, '\n');
    if (*stop == '\0' && _buffer.empty()) {
        // The usual line: nothing pending, no line break in the value.
        const size_t length = static_cast<size_t>(stop - text);
        const size_t size = before.size() + length + after.size();
        if (_lineCapacity < size) {
            _lineCapacity = 2 * size;
            _line.reset(new char[_lineCapacity]);
        }
        // `before` and `after` are a few bytes each: a loop copies them for
        // less than a call.
        char* out = _line.get();
        for (char c : before) *out++ = c;
        std::memcpy(out, text, length);
        out += length;
        for (char c : after) *out++ = c;
        if (const char* failed = writeOut(_file, _line.get(), size))
            reportFailure("QELDMToXML::writeFormatted", failed);
        return;
    }
    _buffer.append(before);
    // A value may hold line breaks of its own: each LF becomes CR LF.
    for (;;) {
        _buffer.append(text, static_cast<size_t>(stop - text));
        if (*stop == '\0') break;
        _buffer += "\r\n";
        text = stop + 1;
        stop = strchrnul(text, '\n');
    }
    _buffer.append(after);
    const char* failed = writeOut(_file, _buffer);
    if (failed) reportFailure("QELDMToXML::writeFormatted", failed);
    _buffer.clear();
}

void QELDMToXML::closeFile(const char* function) {
    if (!_file) return;
    if (!_failed) {
        if (const char* failed = writeOut(_file, _buffer)) reportFailure(function, failed);
    }
    _buffer.clear();
    const int closed = std::fclose(_file);
    _file = nullptr;
    if (closed != 0) reportFailure(function, "fclose");
}

// Reads errno first: it must still hold the failing call's reason.
void QELDMToXML::reportFailure(const char* function, const char* call) {
    const int reason = errno;
    if (_failed) return;
    _failed = true;
    _failureReason = reason;
    std::string detail = std::string(call) + ": " + _path + ": " + std::strerror(reason);
    EMHManager::writeMsg(function, kWriteFailed, detail.c_str());
    JNLManager::writeMsgFormatted("%s: %s; the rest of the description is not written", function, detail.c_str());
}

void QELDMToXML::writeOpenBalise(const char* name) {
    writeLine("<", name, ">\r\n");
    // Counted even when the stream failed: the end-of-export check compares
    // what the traversal opened with what the header announced.
    if (std::strcmp(name, QELElement::Item_Info) == 0) ++_writtenItems;
}

void QELDMToXML::writeCloseBalise(const char* name) { writeLine("</", name, ">\r\n"); }

void QELDMToXML::writeValue(int value) {
    char text[16];
    *std::to_chars(text, text + sizeof text - 1, value).ptr = '\0';
    writeLine("", text, "\r\n");
}

void QELDMToXML::writeValue(const CATUnicodeString& value) { writeLine("", value.ConvertToChar(), "\r\n"); }

void QELDMToXML::writeBalise(const char* name, const CATUnicodeString& value, const char* fallback,
                             unsigned char writeIfEmpty) {
    if (value.IsNull() && !*fallback && !writeIfEmpty) return;
    writeOpenBalise(name);
    writeLine("", value.IsNull() ? fallback : value.ConvertToChar(), "\r\n");
    writeCloseBalise(name);
}

void QELDMToXML::writeBalise(const char* name, int value) {
    writeOpenBalise(name);
    writeValue(value);
    writeCloseBalise(name);
}

void QELDMToXML::writeBalise(const char* name, const QELComponent* value) {
    const unsigned long long handle = value ? value->get_Handle() : 0;
    writeOpenBalise(name);
    writeLine("", hexadecimal(handle).data(), "\r\n");
    writeCloseBalise(name);
}

CATUnicodeString QELDMToXML::replaceAll(CATUnicodeString text, const CATUnicodeString& what,
                                        const CATUnicodeString& by) {
    text.ReplaceAll(what, by);
    return text;
}

// "%.16G" without printf: to_chars with a precision writes what "%.16g"
// writes in the "C" locale, so the point stays a point whatever the process
// locale; upper case turns its "e", "inf" and "nan" into those of "%G".
void QELDMToXML::getMatrixString(const double* matrix, std::string& out) {
    out.clear();
    if (!matrix) return;
    char text[64];
    for (int i = 0; i < 12; ++i) {
        if (i > 0) out += ' ';
        const char* end = std::to_chars(text, text + sizeof text, matrix[i], std::chars_format::general, 16).ptr;
        for (const char* c = text; c != end; ++c) out += (*c >= 'a' && *c <= 'z') ? static_cast<char>(*c - 'a' + 'A') : *c;
    }
}

void QELDMToXML::writeHeader(int numberOfElements, QELSession* session) {
    writeFormatted(true, "%s\n", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>");
    writeOpenBalise(QELElement::DESCFILE);
    writeOpenBalise(QELElement::Options);

    // The one leaf with two value lines.
    writeOpenBalise(QELElement::CATIAEnvironment);
    writeValue(ENVManager::getCatiaEnvironmentName());
    writeValue(ENVManager::getCatiaFullVersion());
    writeCloseBalise(QELElement::CATIAEnvironment);

    // A question never asked saves the design tables: that is the default.
    const bool asked = session && session->getBooleanProperty("IsDesignTableManagedAsked");
    const bool managed = session && session->getBooleanProperty("IsDesignTableManaged");
    if (!asked)
        EMHManager::writeMsg("QELDMToXML::writeHeader", 2103, "CteQELSES_PROPERTY_IS_DESIGNTABLES_MANAGED_ASKED");
    writeBalise(QELElement::SaveDesignTables, asked && !managed ? "0" : "1", "", 1);

    CV5CAAQELSession* host = CV5CAAQELSession::getCATIASessionInstance();
    if (host && host->getSaveAllSheetsInOneFileValue() && PROCManager::isPhasePhase1() &&
        host->get_is_there_drawing())
        writeBalise(QELElement::Single_Files, ENVManager::catiaVectorialExtensions(), "", 1);

    if (PROCManager::isProcessStateDetails()) {
        CATUnicodeString fileName;
        if (CATDocument* active = CV5CAAToolsCommon::getActiveCATDocument()) {
            CATUnicodeString directory, name;
            if (UTILFile::splitPathAndFileName(active->StorageName(), directory, name) == 0) fileName = name;
        }
        writeBalise(QELElement::Context, fileName, "", 1);
    }

    writeCloseBalise(QELElement::Options);
    writeBalise(QELElement::NBElements, numberOfElements);
    _declaredElements = numberOfElements;
}

void QELDMToXML::finishDescription(const char* function) {
    writeCloseBalise(QELElement::DESCFILE);
    closeFile(function);
    if (_declaredElements != _writtenItems) EMHManager::writeMsg(function, 2104, "");
}

void QELDMToXML::writeMAJ(QELComponent* component) {
    if (!component) {
        JNLManager::writeMsg("QELDMToXML::writeMAJ: ip_component is NULL");
        return;
    }
    writeBalise(QELElement::MAJ, component->getIntegerProperty("MAJ"));
}

void QELDMToXML::writeModifiedFlag(QELComponent* component) {
    if (!component) {
        JNLManager::writeMsg("QELDMToXML::writeModifiedFlag: ip_component is NULL");
        return;
    }
    writeBalise(QELElement::Modified_Flag, component->getIntegerProperty("Modified_Flag"));
}

void QELDMToXML::writeCheckAction(QELComponent* component) {
    if (!component) {
        JNLManager::writeMsg("QELDMToXML::writeCheckAction: ip_component is NULL");
        return;
    }
    writeBalise(QELElement::Check_Action, component->getIntegerProperty("Check_Action"));
}

void QELDMToXML::writeMatrixAction(QELComponent* component, unsigned char write) {
    if (!component) {
        JNLManager::writeMsg("QELDMToXML::writeMatrixAction: ip_component is NULL");
        return;
    }
    if (write) writeBalise(QELElement::Matrix_Action, component->getIntegerProperty("Matrix_Action"));
}

void QELDMToXML::writePointerAddress(QELComponent* component) {
    if (!component) {
        JNLManager::writeMsg("QELDMToXML::writePointerAddress: ip_component is NULL");
        return;
    }
    writeBalise(QELElement::POINTER_ADDRESS, component);
}
