#ifndef QELFrameReport_H
#define QELFrameReport_H

#include <string>
#include <vector>

#include "QELFrameCheck.h"

// How check and apply show a frame report: one rule for both.

// The kind as the count of its unlisted problems names it: "a value line
// that begins with '<'".
const char* qelFrameProblemKindText(QELFrameProblemKind kind);

// The report as lines for people, named `name`: each kept problem as
// "NAME:LINE: message", then for each kind with problems not kept
// "NAME: 3,751 further problems of the kind "..." not listed". Bytes quoted
// from the file are escaped (qelEscape). `check` prints them as its report,
// `apply` as its diagnostics.
std::vector<std::string> qelFrameReportLines(const std::string& name, const QELFrameReport& report);

#endif
