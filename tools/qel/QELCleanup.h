#ifndef QELCleanup_H
#define QELCleanup_H

#include <csignal>
#include <string>
#include <vector>

// Temporary files and directories are removed whatever ends the program:
// by their owners on every return path, at exit for any still registered,
// and on SIGINT, SIGTERM, SIGHUP, SIGPIPE and SIGXFSZ by a handler that
// removes the paths registered beforehand (unlink and rmdir only, which are
// async-signal-safe) and then dies of the same signal with its default
// action, so that the exit status still says which signal it was.

// Installs the handlers and the exit hook; called once, by main(). A signal
// ignored when the program starts (nohup, a background job) stays ignored.
void qelInstallCleanup();

// Blocks the signals the cleanup handles for the scope's life: a file made
// while they are blocked cannot be left behind unregistered, and a thread
// started meanwhile inherits the mask and never runs the handler.
class QELSignalsBlocked {
public:
    QELSignalsBlocked();
    ~QELSignalsBlocked();
    QELSignalsBlocked(const QELSignalsBlocked&) = delete;
    QELSignalsBlocked& operator=(const QELSignalsBlocked&) = delete;

private:
    sigset_t _previous;
};

// One registered path: removed on a signal, at exit, or when this object
// goes, unless released first.
class QELCleanupPath {
public:
    QELCleanupPath() = default;
    ~QELCleanupPath() { remove(); }
    QELCleanupPath(QELCleanupPath&& other) noexcept : _slot(other._slot) { other._slot = -1; }
    QELCleanupPath& operator=(QELCleanupPath&&) = delete;
    QELCleanupPath(const QELCleanupPath&) = delete;
    QELCleanupPath& operator=(const QELCleanupPath&) = delete;

    // Register before the file exists, or with the signals blocked around
    // making it. False when the path cannot be registered (too long, or too
    // many at once).
    bool addFile(const std::string& path) { return add(path, false); }
    // A directory is removed after every registered file, so the files
    // inside it must be registered too.
    bool addDirectory(const std::string& path) { return add(path, true); }
    // Removes the path now (rmdir for a directory) and forgets it.
    void remove();
    // Forgets the path and leaves it: it was renamed into place, or kept.
    void release();

private:
    bool add(const std::string& path, bool directory);
    int _slot = -1;
};

// mkstemp/mkdtemp with the path registered; `pattern` ends in XXXXXX and is
// replaced by the name made. The file's descriptor, or -1 (errno says why,
// ENAMETOOLONG or EMFILE when it cannot be registered).
int qelMakeTemporaryFile(std::string& pattern, QELCleanupPath& registration);
bool qelMakeTemporaryDirectory(std::string& pattern, QELCleanupPath& registration);

// The folder for private temporary files: TMPDIR, else /tmp.
std::string qelTemporaryFolder();

// A private directory for the files one run passes between its stages,
// removed with what it holds.
class QELScratchDirectory {
public:
    QELScratchDirectory();
    ~QELScratchDirectory();
    QELScratchDirectory(const QELScratchDirectory&) = delete;
    QELScratchDirectory& operator=(const QELScratchDirectory&) = delete;
    bool valid() const { return !_path.empty(); }
    // The path of a file in the directory, registered: a signal removes it
    // before the directory. Empty when it cannot be registered.
    std::string file(const std::string& name);

private:
    std::string _path;
    QELCleanupPath _directory;
    std::vector<QELCleanupPath> _files;
};

#endif
