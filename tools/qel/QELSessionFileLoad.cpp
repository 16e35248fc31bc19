// Reading a session file: the text, the JSON parse (with the line and column
// of a syntax error, and repeated keys refused), and the order in which the
// stages build the model.

#include <cerrno>
#include <cstring>
#include <fstream>
#include <new>
#include <vector>

#include "QELSessionFile.h"
#include "QELSessionFileBuilder.h"

namespace {

const char* const kFormat = "qel-session/1";
const char* const kOutOfMemory = "out of memory while loading the session";

// Where a JSON object repeats a key. The parser would keep the last value
// and drop the first without a word, so the parse watches for it: the
// stack holds, per open object or array, the keys seen or the element
// count, which also gives the path of the offender.
class RepeatedKeyWatch {
public:
    struct Found {
        std::string path; // of the repeated key
    };

    bool operator()(int, nlohmann::detail::parse_event_t event, QELJson& parsed) {
        using Event = nlohmann::detail::parse_event_t;
        switch (event) {
        case Event::object_start:
            enterValue();
            push(false);
            break;
        case Event::array_start:
            enterValue();
            push(true);
            break;
        case Event::object_end:
        case Event::array_end:
            --_depth;
            break;
        case Event::key: {
            Frame& frame = _frames[_depth - 1];
            const std::string& key = parsed.get_ref<const std::string&>();
            for (const std::string& seen : frame.keys) {
                if (seen == key) throw Found{pathText() + '/' + pointerToken(key)};
            }
            frame.keys.push_back(key);
            break;
        }
        case Event::value:
            enterValue();
            break;
        }
        return true;
    }

private:
    struct Frame {
        bool isArray = false;
        long index = -1;               // the element being read, in an array
        std::vector<std::string> keys; // the keys read so far, in an object
    };

    // A value begins: in an array, it is the next element.
    void enterValue() {
        if (_depth > 0 && _frames[_depth - 1].isArray) ++_frames[_depth - 1].index;
    }
    // Frames are reused rather than freed, so that a million small objects
    // cost no allocation beyond their keys.
    void push(bool isArray) {
        if (_frames.size() <= _depth) _frames.emplace_back();
        Frame& frame = _frames[_depth++];
        frame.isArray = isArray;
        frame.index = -1;
        frame.keys.clear();
    }
    // RFC 6901: "~" and "/" inside a key are escaped.
    static std::string pointerToken(const std::string& key) {
        std::string out;
        for (char c : key) out += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
        return out;
    }
    // The path of the object being read.
    std::string pathText() const {
        std::string out;
        for (size_t i = 0; i + 1 < _depth; ++i) {
            const Frame& frame = _frames[i];
            out += '/';
            out += frame.isArray ? std::to_string(frame.index) : pointerToken(frame.keys.back());
        }
        return out;
    }

    std::vector<Frame> _frames;
    size_t _depth = 0;
};

// The 1-based line and column of a byte offset; columns count characters,
// not the bytes of their UTF-8 form.
void lineAndColumn(const std::string& text, size_t offset, int& line, int& column) {
    if (offset > text.size()) offset = text.size();
    line = 1;
    size_t lineStart = 0;
    for (size_t i = 0; i < offset; ++i) {
        if (text[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    }
    column = 1;
    for (size_t i = lineStart; i < offset; ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) ++column;
    }
}

// The parser reports the last byte it read. For a whole token that came
// where it does not belong ("unexpected string literal"), that is the
// token's last byte: the error is shown at its first instead.
size_t tokenStart(const std::string& text, size_t last, const std::string& explanation) {
    if (last >= text.size()) return last;
    if (explanation.find("unexpected string literal") != std::string::npos && text[last] == '"') {
        for (size_t i = last; i-- > 0;) {
            if (text[i] != '"') continue;
            size_t backslashes = 0;
            while (backslashes < i && text[i - 1 - backslashes] == '\\') ++backslashes;
            if (backslashes % 2 == 0) return i;
        }
        return last;
    }
    const bool literal = explanation.find("unexpected number literal") != std::string::npos ||
                         explanation.find("unexpected 'true' literal") != std::string::npos ||
                         explanation.find("unexpected 'false' literal") != std::string::npos ||
                         explanation.find("unexpected 'null' literal") != std::string::npos;
    if (!literal) return last;
    size_t start = last;
    while (start > 0 && std::strchr("0123456789+-.eEtruefalsn", text[start - 1]) && text[start - 1] != '\0') --start;
    return start;
}

// The parser's explanation without its own prefix and position, which the
// error gives in its fields: "syntax error while parsing object - unexpected
// '}'; expected string literal".
std::string parseExplanation(const nlohmann::json::exception& error) {
    std::string what = error.what();
    const size_t bracket = what.find("] ");
    if (bracket != std::string::npos) what.erase(0, bracket + 2);
    const std::string located = "parse error at line ";
    if (what.compare(0, located.size(), located) == 0) {
        const size_t colon = what.find(": ");
        if (colon != std::string::npos) what.erase(0, colon + 2);
    } else if (what.compare(0, 13, "parse error: ") == 0) {
        what.erase(0, 13);
    }
    return what;
}

bool parseText(const std::string& text, QELJson& root, QELSessionFileError& error) {
    try {
        RepeatedKeyWatch watch;
        root = QELJson::parse(text, std::ref(watch));
        return true;
    } catch (const nlohmann::json::parse_error& e) {
        // The offset counts from 1.
        error.message = parseExplanation(e);
        lineAndColumn(text, tokenStart(text, e.byte > 0 ? e.byte - 1 : 0, error.message), error.line, error.column);
    } catch (const nlohmann::json::out_of_range& e) {
        // A number beyond a double ("1e400"): the parser names the literal
        // but not where it stands; it is shown where it first appears.
        error.message = parseExplanation(e);
        const size_t open = error.message.find('\'');
        const size_t close = error.message.rfind('\'');
        const size_t at = open < close ? text.find(error.message.substr(open + 1, close - open - 1)) : std::string::npos;
        if (at != std::string::npos) lineAndColumn(text, at, error.line, error.column);
    } catch (const RepeatedKeyWatch::Found& found) {
        error.message = found.path + ": the key is given twice in one object";
    } catch (const std::bad_alloc&) {
        error.message = kOutOfMemory;
    }
    return false;
}

void build(QELJson& root, bool consume) {
    const QELJsonPath top;
    qelExpectObject(root, top, "an object (a session file)");
    qelCheckKeys(root, top, {"format", "settings", "items", "documents", "workspaces"});
    const QELJson* format = qelMember(root, "format");
    if (!format) qelSessionFault(top, std::string("missing \"format\"; expected \"") + kFormat + "\"");
    if (qelExpectString(*format, top / "format") != kFormat)
        qelSessionFault(top / "format", std::string("expected \"") + kFormat + "\"");

    static const QELJson none = QELJson::array();
    const QELJson* settings = qelMember(root, "settings");
    const QELJson* items = qelMember(root, "items");
    const QELJson* documents = qelMember(root, "documents");
    auto workspaces = root.find("workspaces");
    QELJson noWorkspaces = QELJson::array();

    QELSessionFileBuild build;
    build.consume = consume;
    qelBuildSettings(settings ? *settings : QELJson::object(), top / "settings");
    qelBuildItems(items ? *items : none, top / "items", build);
    qelBuildDocuments(documents ? *documents : none, top / "documents", build);
    QELJson& workspaceList = workspaces != root.end() ? *workspaces : noWorkspaces;
    qelBuildWorkspaces(workspaceList, top / "workspaces", build);
    qelBuildItemRelations(items ? *items : none, top / "items", build);
    qelBuildDocumentRelations(documents ? *documents : none, top / "documents", build);
    qelBuildAssemblies(workspaceList, top / "workspaces", build);
}

// Builds `root`, consuming it unless told otherwise; false with the error
// filled for a file that does not describe a session.
bool buildRoot(QELJson& root, QELSessionFileError& error, bool consume = true) {
    try {
        build(root, consume);
        return true;
    } catch (const QELSessionFileFault& fault) {
        error.message = fault.path.empty() ? fault.message : fault.path + ": " + fault.message;
    } catch (const std::bad_alloc&) {
        error.message = kOutOfMemory;
    }
    return false;
}

bool loadText(std::string&& text, QELSessionFileError& error) {
    error = QELSessionFileError();
    QELJson root;
    if (!parseText(text, root, error)) return false;
    // Parsed: the text is no longer needed, and a large file is worth giving
    // back before the model grows.
    std::string().swap(text);
    return buildRoot(root, error);
}

} // namespace

bool qelLoadSessionText(const std::string& text, QELSessionFileError& error) {
    return loadText(std::string(text), error);
}

struct QELParsedSession::Parse {
    QELJson root;
};

QELParsedSession::QELParsedSession() = default;
QELParsedSession::~QELParsedSession() = default;

bool QELParsedSession::parse(const std::string& text, QELSessionFileError& error) {
    error = QELSessionFileError();
    auto parsed = std::make_unique<Parse>();
    if (!parseText(text, parsed->root, error)) return false;
    _parse = std::move(parsed);
    return true;
}

bool QELParsedSession::build(QELSessionFileError& error) const {
    error = QELSessionFileError();
    if (!_parse) {
        error.message = "no session parsed";
        return false;
    }
    // Built in place: nothing of the parse is consumed.
    return buildRoot(_parse->root, error, false);
}

bool qelLoadSessionFile(const std::string& path, QELSessionFileError& error) {
    error = QELSessionFileError();
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error.message = "cannot open " + path + ": " + std::strerror(errno);
        return false;
    }
    std::string text;
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    in.seekg(0, std::ios::beg);
    if (size > 0) {
        text.resize(static_cast<size_t>(size));
        in.read(&text[0], size);
    }
    if (!in) {
        error.message = "cannot read " + path;
        return false;
    }
    return loadText(std::move(text), error);
}
