#ifndef QELAnswerNames_H
#define QELAnswerNames_H

#include <string>
#include <string_view>

// The names the simulated PDM side gives what it creates. All of them follow
// from a counter and the names in the description, never from the clock or
// from chance, so that one description always gets the same answer.

// "ITM-000042".
std::string qelAnswerItemId(long ordinal);
// "UID-" and twelve characters of a hash of the kind ("IR" item revision,
// "DS" dataset, "NR" named reference, "OC" occurrence), the counter and the
// key that names the object.
std::string qelAnswerUid(std::string_view kind, long ordinal, std::string_view key);
// The extension of a file name with its dot (".CATPart"), or empty. A
// directory part is ignored, whichever separator it uses.
std::string qelFileExtension(std::string_view fileName);
// The next dataset version: "3" after "2"; "1" after anything not a number.
std::string qelNextVersion(std::string_view version);

#endif
