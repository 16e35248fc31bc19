#ifndef QELOutputFile_H
#define QELOutputFile_H

#include <string>
#include <string_view>

#include "QELCleanup.h"

// A file qel writes, whole or not at all. The writer writes to path(), a
// temporary file made next to the target (on its file system, so that the
// rename is atomic); commit() syncs it and renames it onto the target. Until
// then the target is as it was, and a failure, a signal or an early return
// removes the temporary file.
//
// "-" is standard output. A writer that can write to a stream is given "-"
// itself (open with `streams`); one that writes to a path only (the
// library's description writer) gets a private temporary file, which
// commit() copies out. A target that exists and is not a regular file
// (/dev/null, a FIFO, a terminal) is written in place: nothing to rename.
class QELOutputFile {
public:
    // False (reported) when the temporary file cannot be made.
    bool open(const std::string& target, bool streams = false);
    const std::string& path() const { return _path; }
    // The target as messages name it: the argument, or "standard output".
    const std::string& name() const { return _name; }
    // Writes `text` to path(), or to standard output for "-"; false
    // (reported) on failure.
    bool write(std::string_view text);
    // After the writer has closed path() without error: into place. False
    // (reported) when the file cannot be synced, renamed or copied out.
    // Without open(), there is nothing to do.
    bool commit();
    // Reports that the writer failed, with the system's reason.
    void failed(int reason) const;

private:
    enum class Mode { None, Rename, CopyOut, InPlace, Stream };
    std::string _target;
    std::string _path;
    std::string _name;
    Mode _mode = Mode::None;
    QELCleanupPath _temporary;
};

#endif
