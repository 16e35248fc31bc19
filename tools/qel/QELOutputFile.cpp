#include "QELOutputFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "QELCommandSupport.h"
#include "QELStandardOutput.h"

namespace {

constexpr const char* kStandardOutput = "standard output";

// The mode a new file gets from open(2) with 0666: the temporary file is
// made 0600 and would otherwise keep it.
mode_t newFileMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

bool syncFile(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    const bool synced = ::fsync(fd) == 0;
    const int reason = errno;
    ::close(fd);
    errno = reason;
    return synced;
}

// The rename itself is durable once the folder is synced; a folder that
// cannot be synced (some file systems refuse) leaves the file in place all
// the same.
void syncFolder(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

} // namespace

bool QELOutputFile::open(const std::string& target, bool streams) {
    _target = target;
    _name = target == "-" ? kStandardOutput : target;
    std::filesystem::path resolved = target;
    struct stat status {};
    if (target == "-") {
        if (streams) {
            _mode = Mode::Stream;
            _path = target;
            return true;
        }
        _mode = Mode::CopyOut;
    } else if (::stat(target.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode)) {
            _mode = Mode::InPlace;
            _path = target;
            return true;
        }
        // A link stays a link: its target is replaced.
        std::error_code error;
        const std::filesystem::path followed = std::filesystem::canonical(target, error);
        if (!error) resolved = followed;
        _mode = Mode::Rename;
    } else {
        _mode = Mode::Rename;
    }
    _target = _mode == Mode::Rename ? resolved.string() : target;
    // Next to the target: hidden, and named after it for whoever finds one
    // after a crash.
    std::string pattern =
        _mode == Mode::CopyOut
            ? (std::filesystem::path(qelTemporaryFolder()) / "qel-output-XXXXXX").string()
            : (resolved.parent_path() / ("." + resolved.filename().string() + ".qel-XXXXXX")).string();
    const int fd = qelMakeTemporaryFile(pattern, _temporary);
    if (fd < 0) {
        qelSay("%s: cannot be written: %s", _name.c_str(), std::strerror(errno));
        _mode = Mode::None;
        return false;
    }
    const mode_t mode = _mode == Mode::Rename && S_ISREG(status.st_mode) ? status.st_mode & 07777 : newFileMode();
    if (_mode == Mode::Rename) ::fchmod(fd, mode);
    ::close(fd);
    _path = pattern;
    return true;
}

bool QELOutputFile::write(std::string_view text) {
    if (_mode == Mode::Stream) return qelWriteStandardOutput(text.data(), text.size());
    FILE* file = std::fopen(_path.c_str(), "wb");
    bool written = file && std::fwrite(text.data(), 1, text.size(), file) == text.size();
    written = written && std::fflush(file) == 0;
    int reason = errno;
    if (file && std::fclose(file) != 0 && written) {
        written = false;
        reason = errno;
    }
    if (!written) failed(reason);
    return written;
}

void QELOutputFile::failed(int reason) const {
    if (_mode == Mode::Stream) return qelStandardOutputFailed(reason);
    // On its way to standard output, the temporary file is what failed.
    const std::string& failing = _mode == Mode::CopyOut ? _path : _name;
    qelSay("%s: cannot be written: %s", failing.c_str(), std::strerror(reason));
}

bool QELOutputFile::commit() {
    switch (_mode) {
    case Mode::None:
    case Mode::Stream:
    case Mode::InPlace: return true;
    case Mode::CopyOut: {
        FILE* file = std::fopen(_path.c_str(), "rb");
        if (!file) {
            qelSay("%s: %s", _path.c_str(), std::strerror(errno));
            return false;
        }
        std::vector<char> block(1 << 16);
        bool copied = true;
        size_t got = 0;
        while (copied && (got = std::fread(block.data(), 1, block.size(), file)) > 0)
            copied = qelWriteStandardOutput(block.data(), got);
        if (copied && std::ferror(file)) {
            qelSay("%s: %s", _path.c_str(), std::strerror(errno));
            copied = false;
        }
        std::fclose(file);
        _temporary.remove();
        return copied;
    }
    case Mode::Rename: break;
    }
    if (!syncFile(_path) || ::rename(_path.c_str(), _target.c_str()) != 0) {
        failed(errno);
        _temporary.remove();
        return false;
    }
    _temporary.release();
    const std::filesystem::path folder = std::filesystem::path(_target).parent_path();
    syncFolder(folder.empty() ? "." : folder.string());
    return true;
}
