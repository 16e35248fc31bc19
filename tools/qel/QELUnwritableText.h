#ifndef QELUnwritableText_H
#define QELUnwritableText_H

#include <string>
#include <unordered_map>

// Values the description's line format cannot carry as the model holds them:
// characters above U+00FF (the file is ISO-8859-1, so they are written as
// '?') and XML markup characters ('&', '<'), which the format writes as they
// are, unescaped. The description stays as the library writes it; the user is
// told, once per component and field, where such a value went.
class QELUnwritableText {
public:
    // Records every string value of the live components that holds one.
    void collect();
    bool empty() const { return _values.empty(); }
    // One warning on standard error per entry's component and element whose
    // value line is a recorded value; `name` is the description's name for
    // the user (the file is read from `descriptionPath`).
    void report(const std::string& descriptionPath, const std::string& name) const;

private:
    struct Value {
        std::string utf8; // as the model holds it
        bool wide = false;
        bool markup = false;
    };
    std::unordered_map<std::string, Value> _values; // by the text the file holds
};

#endif
