#include "QELInputFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELStandardOutput.h"

namespace {
constexpr const char* kStandardInput = "standard input";
} // namespace

int QELInputFile::open(const std::string& argument) {
    const bool standardInput = argument == "-";
    _name = standardInput ? kStandardInput : argument;
    _path = argument;
    struct stat status {};
    if (standardInput) {
        // A regular file read from its start is read by path like any other.
        if (::fstat(STDIN_FILENO, &status) == 0 && S_ISREG(status.st_mode) &&
            ::lseek(STDIN_FILENO, 0, SEEK_CUR) == 0) {
            _path = "/dev/stdin";
            return QELExit_Success;
        }
        return spool(STDIN_FILENO);
    }
    if (::stat(argument.c_str(), &status) == 0 && S_ISREG(status.st_mode)) return QELExit_Success;
    const int fd = ::open(argument.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        qelSay("%s: %s", _name.c_str(), std::strerror(errno));
        return QELExit_Usage;
    }
    const int result = spool(fd);
    ::close(fd);
    return result;
}

int QELInputFile::spool(int fd) {
    std::string copy = (std::filesystem::path(qelTemporaryFolder()) / "qel-input-XXXXXX").string();
    const int out = qelMakeTemporaryFile(copy, _copy);
    if (out < 0) {
        qelSay("%s: cannot make a temporary copy: %s", _name.c_str(), std::strerror(errno));
        return QELExit_Failed;
    }
    std::vector<char> block(1 << 16);
    int status = QELExit_Success;
    while (status == QELExit_Success) {
        const ssize_t got = ::read(fd, block.data(), block.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) {
            qelSay("%s: %s", _name.c_str(), std::strerror(errno));
            status = QELExit_Usage;
        } else if (got == 0) {
            break;
        } else if (!qelWriteAll(out, block.data(), static_cast<size_t>(got))) {
            qelSay("%s: cannot be copied to %s: %s", _name.c_str(), copy.c_str(), std::strerror(errno));
            status = QELExit_Failed;
        }
    }
    if (::close(out) != 0 && status == QELExit_Success) {
        qelSay("%s: cannot be copied to %s: %s", _name.c_str(), copy.c_str(), std::strerror(errno));
        status = QELExit_Failed;
    }
    if (status != QELExit_Success) {
        _copy.remove();
        return status;
    }
    _path = copy;
    return QELExit_Success;
}

CLI::Validator qelExistingInput() {
    return CLI::Validator(
        [](std::string& value) { return value == "-" ? std::string() : CLI::ExistingFile(value); }, "FILE or -",
        "an existing file, or - for standard input");
}

void qelRequireOneStandardInput(const std::vector<std::string>& arguments) {
    if (std::count(arguments.begin(), arguments.end(), "-") > 1)
        throw CLI::ValidationError("standard input (-) can be given only once");
}
