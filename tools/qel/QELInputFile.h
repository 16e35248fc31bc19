#ifndef QELInputFile_H
#define QELInputFile_H

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "QELCleanup.h"

// A file named on the command line for reading: a session file, a
// description, an answer. The answer reader seeks in its file, and the
// session loader and the frame check may read theirs more than once, so
// what is not a regular file (standard input given as "-", /dev/stdin on a
// pipe, a FIFO, a device) is first copied whole to a private temporary file,
// removed at exit or on a signal: the same bytes give the same result,
// whether they come from a file or a pipe.
class QELInputFile {
public:
    // 0 when ready; otherwise reported, and the exit status: QELExit_Usage
    // when the input cannot be read, QELExit_Failed when its copy cannot be
    // written.
    int open(const std::string& argument);
    // The file to read.
    const std::string& path() const { return _path; }
    // The input as messages name it: the argument, or "standard input".
    const std::string& name() const { return _name; }

private:
    int spool(int fd);

    std::string _path;
    std::string _name;
    QELCleanupPath _copy;
};

// The check of an input argument: "-" or an existing file.
CLI::Validator qelExistingInput();

// Standard input can be read once: a usage error (thrown as CLI11's
// ValidationError) when more than one of the arguments is "-".
void qelRequireOneStandardInput(const std::vector<std::string>& arguments);

#endif
