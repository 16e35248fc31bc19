#ifndef TYPTypeTag_H
#define TYPTypeTag_H

#include <string>

// Type tags and map names are a handful of distinct texts used over and over;
// they are interned once so that every map entry holds a pointer, not a copy.
class TYPTypeTag {
public:
    // The interned copy of `text` (null is taken as empty): owned by this
    // table, valid until the process ends.
    static const std::string* intern(const char* text);
    static const std::string* empty();
};

#endif
