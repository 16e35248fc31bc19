#ifndef CV5CAAToolsDesc_H
#define CV5CAAToolsDesc_H

#include <string>

#include "EnumDocumentType.h"

class UTILLineFile;

// Low-level scanning of description and answer files: one tag or one value
// per line, tags compared as whole lines. Positions are offsets of line
// starts; a `from` of 0 or less means "where the file stands". Every
// operation ends at the end of the file: nothing here can loop forever on a
// truncated or malformed file.
class CV5CAAToolsDesc {
public:
    // `from` is where the element `name` begins (its opening line). Reads to
    // the line "</name>" that closes it (inner elements of the same name are
    // closed first) and sets `pos` after it. False when the file ends first;
    // `pos` is then the end of the file.
    static bool searchClosingNode(UTILLineFile& file, const std::string& name, long long from, long long& pos);
    // Reads the next line; when it is a tag, "<X>" or "</X>", gives X and sets
    // `pos` after the line. False for any other line or at the end.
    static bool getNodeName(UTILLineFile& file, long long from, long long& pos, std::string& name);
    // From `from`, finds the next line "<name>" and takes the line after it
    // as the value; `pos` ends after "</name>". False when the file ends
    // before; the value is then left as it was.
    static bool getNodeValue(UTILLineFile& file, long long from, const std::string& name, long long& pos,
                             std::string& value);
    // The document type of the element that wraps an answer entry ("CATPart",
    // "CATProduct", ...); -1 for any other name.
    static EnumDocumentType getDocumentTypeFromBalise(const std::string& name);
};

#endif
