#ifndef QELPropertyText_H
#define QELPropertyText_H

#include <string>

class QELPropertyHolder;

// The value of a property as UTF-8 text, whatever its type, for tables that
// compare and show values. Independent of the model's own dumps, so that a
// change to their layout changes no table:
//   string as it stands; integer in decimal; boolean true/false; matrix the
//   16 numbers ("%.17g", single spaces); key/value pairs "key=value; ...";
//   arrays and lists "[a, b]"; a product reference "product" or "null".
std::string qelPropertyText(const QELPropertyHolder& holder, int index);
// The name of a property type code ("string", "integer", ...).
const char* qelPropertyTypeName(int type);

#endif
