#pragma once

#include "platform/RuntimeError.h"

#include <QString>

#include <vector>

namespace quellbox {

/// A call of the file system that failed.
struct FileFailure {
    FileFailure(const QString& itsPath, const QString& itsReason) : path(itsPath), reason(itsReason) {}
    explicit FileFailure(const FileError& error)
        : path(error.Path()), reason(error.Reason()), problem(error.Problem()) {}

    QString path;
    QString reason; ///< in the system's words
    FileProblem problem = FileProblem::Other;
};

/// Writes failures that the user is not told of to the log.
void LogFailures(const std::vector<FileFailure>& failures);

} // namespace quellbox
