#include "UTILSink.h"

#include <cstdlib>

bool UTILSinkOutput::active() {
    if (!_chosen) {
        const char* path = std::getenv(_variable);
        if (!open(path ? path : "")) std::fprintf(stderr, "%s: cannot open %s for appending\n", _variable, path);
    }
    return _output != nullptr;
}

void UTILSinkOutput::writeLine(std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), _output);
    std::fputc('\n', _output);
    std::fflush(_output);
}

bool UTILSinkOutput::open(const std::string& path) {
    close();
    _chosen = true;
    if (path.empty()) return true;
    if (path == "-") {
        _output = stderr;
        return true;
    }
    _output = std::fopen(path.c_str(), "a");
    return _output != nullptr;
}

void UTILSinkOutput::reset() {
    close();
    _chosen = false;
}

void UTILSinkOutput::close() {
    if (_output && _output != stderr) std::fclose(_output);
    _output = nullptr;
}
