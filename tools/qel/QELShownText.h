#ifndef QELShownText_H
#define QELShownText_H

#include <string>
#include <string_view>

// Text from a file or a session, quoted for a diagnostic: control bytes,
// non-ASCII bytes, '\' and '"' escaped ("\x1b"), so that a terminal never
// receives a byte it could take for a command; cut after `limit` bytes.
std::string qelShown(std::string_view text, size_t limit = 60);

#endif
