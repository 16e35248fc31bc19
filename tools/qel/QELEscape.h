#ifndef QELEscape_H
#define QELEscape_H

#include <string>
#include <string_view>

// Text taken from files (their names, their lines, the values they hold)
// reaches the user's terminal in messages and in check's report. A terminal
// interprets control bytes and may interpret bytes of a multi-byte encoding,
// so every byte below 0x20, 0x7F and every byte from 0x80 is shown as \xHH
// (ESC as \x1b): a line of text stays one line, and the terminal receives
// printable ASCII only.
std::string qelEscape(std::string_view text);
// A value quoted for a message: escaped as above, in double quotes, cut
// after `limit` bytes ("...").
std::string qelShown(std::string_view text, size_t limit = 60);

#endif
