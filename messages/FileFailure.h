#pragma once

#include <QString>

#include <vector>

namespace quellbox {

/// A call of the file system that failed.
struct FileFailure {
    QString path;
    QString reason;
};

/// Writes failures that the user is not told of to the log.
void LogFailures(const std::vector<FileFailure>& failures);

} // namespace quellbox
