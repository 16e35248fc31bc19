#include "UTILFile.h"

namespace {

// Position of the last directory separator, or npos. The one-byte form keeps
// every character at its own position ('?' stands for a code point above
// 0xFF), so byte positions here are character positions.
std::string::size_type lastSeparator(const CATUnicodeString& text) {
    return text.ToLatin1().find_last_of("/\\");
}

} // namespace

int UTILFile::splitPathAndFileName(const CATUnicodeString& full, CATUnicodeString& path,
                                   CATUnicodeString& fileName) {
    if (full.IsNull()) {
        path = CATUnicodeString();
        fileName = CATUnicodeString();
        return -1;
    }
    std::string::size_type cut = lastSeparator(full);
    int length = full.GetLengthInChar();
    if (cut == std::string::npos) {
        // Copied first: `full` may be one of the outputs.
        CATUnicodeString whole = full;
        path = CATUnicodeString();
        fileName = whole;
        return 0;
    }
    int at = static_cast<int>(cut);
    CATUnicodeString before = full.SubString(0, at);
    CATUnicodeString after = full.SubString(at + 1, length - at - 1);
    path = before;
    fileName = after;
    return 0;
}

int UTILFile::readLine(FILE* file, std::string& line) {
    line.clear();
    if (!file)
        return -1;
    bool readSomething = false;
    bool endedByNewline = false;
    flockfile(file);
    for (;;) {
        int c = getc_unlocked(file);
        if (c == EOF)
            break;
        readSomething = true;
        if (c == '\n') {
            endedByNewline = true;
            break;
        }
        line.push_back(static_cast<char>(c));
    }
    funlockfile(file);
    if (!endedByNewline && std::ferror(file)) {
        line.clear();
        return -1;
    }
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return readSomething ? 1 : 0;
}

int UTILFile::readLine(FILE* file, CATUnicodeString& line) {
    std::string text;
    int status = readLine(file, text);
    line = CATUnicodeString(text.data(), text.size());
    return status;
}

int UTILFile::deleteFile(const CATUnicodeString& path) {
    if (path.IsNull())
        return -1;
    return std::remove(path.ConvertToChar()) == 0 ? 0 : -1;
}

CATUnicodeString UTILFile::getExtension(const CATUnicodeString& fileName) {
    const std::string& text = fileName.ToLatin1();
    std::string::size_type cut = lastSeparator(fileName);
    std::string::size_type nameStart = cut == std::string::npos ? 0 : cut + 1;
    std::string::size_type dot = text.rfind('.');
    if (dot == std::string::npos || dot < nameStart)
        return CATUnicodeString();
    int from = static_cast<int>(dot) + 1;
    return fileName.SubString(from, fileName.GetLengthInChar() - from);
}
