#include "messages/FileFailure.h"

#include <QLoggingCategory>

namespace quellbox {

namespace {

Q_LOGGING_CATEGORY(logFiles, "quellbox.files")

} // namespace

void LogFailures(const std::vector<FileFailure>& failures) {
    for (const FileFailure& failure : failures) {
        qCWarning(logFiles).noquote() << failure.path << failure.reason;
    }
}

} // namespace quellbox
