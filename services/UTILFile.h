#ifndef UTILFile_H
#define UTILFile_H

#include <cstdio>
#include <string>

#include "CATUnicodeString.h"

// Stand-in for the in-house file helpers. Paths cross as ISO-8859-1 text, so
// every byte of a path built from `char*` reaches the file system unchanged.
class UTILFile {
public:
    // Cuts `full` at its last '/' or '\': `path` is what stands before the
    // separator (without it), `fileName` what follows. Without a separator
    // `path` is empty and `fileName` is the whole text. Answers 0, or -1 when
    // `full` is empty (both parts are then empty).
    static int splitPathAndFileName(const CATUnicodeString& full, CATUnicodeString& path,
                                    CATUnicodeString& fileName);

    // Reads one line of any length into `line`, without its line end: the
    // final LF and a CR before it are removed, and so is a CR that ends the
    // file. Answers 1 when a line was read (an empty line and a last line
    // without LF included), 0 at end of file with nothing read (`line` is then
    // empty), -1 on a read error or a null file.
    static int readLine(FILE* file, std::string& line);
    static int readLine(FILE* file, CATUnicodeString& line);

    // Answers 0 when the file was deleted, -1 otherwise.
    static int deleteFile(const CATUnicodeString& path);

    // The text after the last '.' of the file-name part ("a.b/c.tar.gz" gives
    // "gz"); empty when that part holds no '.'.
    static CATUnicodeString getExtension(const CATUnicodeString& fileName);

    UTILFile() = delete;
};

#endif
