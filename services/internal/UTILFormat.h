#ifndef UTILFormat_H
#define UTILFormat_H

#include <string>

// Number formatting that does not depend on the process locale: a decimal
// comma locale still gives a point, because files and dumps are read by
// programs on other machines.
class UTILFormat {
public:
    // `format` holds exactly one floating conversion ("%g", "%.16G", ...).
    static std::string formatDouble(const char* format, double value);
    static std::string formatInt(long value);
};

#endif
