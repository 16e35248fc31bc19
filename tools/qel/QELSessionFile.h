#ifndef QELSessionFile_H
#define QELSessionFile_H

#include <memory>
#include <ostream>
#include <string>

// The session file of the command-line program: a UTF-8 JSON text holding
// everything a CAD session holds and every answer of the simulated CAD host.

struct QELSessionFileError {
    int line = 0;   // 1-based; 0 when unknown
    int column = 0; // 1-based; 0 when unknown
    std::string message;
};

// Reads a session file and builds it: settings into ENVManager, PROCManager
// and CV5CAAQELSession; components into QELSession::getInstance(), owned by
// the model heap. False, with the error filled, for a file that cannot be
// read, is not JSON (line, column and what was expected) or does not describe
// a session (the path of the faulty value, e.g. "/documents/3/type", and what
// was expected).
bool qelLoadSessionFile(const std::string& path, QELSessionFileError& error);
bool qelLoadSessionText(const std::string& text, QELSessionFileError& error);

// A session file parsed once and built as often as needed: the fuzz harnesses
// build the same session for every input they try.
class QELParsedSession {
public:
    QELParsedSession();
    ~QELParsedSession();
    // False, with the error filled as qelLoadSessionText fills it, for a text
    // that is not JSON; the previous parse is kept then.
    bool parse(const std::string& text, QELSessionFileError& error);
    // Builds the parsed session as qelLoadSessionText would.
    bool build(QELSessionFileError& error) const;

private:
    struct Parse;
    std::unique_ptr<Parse> _parse;
};

// Sets PROCManager for a command, a process and a phase given by name, as the
// session file's "settings" do; empty names leave the current settings. False
// with a message listing the accepted names for an unknown one.
bool qelApplyCommand(const std::string& command, const std::string& process, const std::string& phase,
                     std::string& error);

// The session file's name of a document type ("product", "design-table",
// ...); "unset" for a value outside the list.
const char* qelDocumentTypeName(int type);

// A synthetic session file (JSON text) of `occurrences` absolute occurrences
// at most `depth` levels deep, shaped like real assemblies; the same seed
// gives the same text.
std::string qelGenerateSession(long occurrences, int depth, unsigned long seed);

// The assembly tree of the session's workspaces, as indented text or as a
// Graphviz digraph.
void qelPrintTree(std::ostream& out, bool dot);

#endif
