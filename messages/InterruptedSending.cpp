#include "messages/InterruptedSending.h"

#include "delivery/SendingFolder.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

// No server takes that long for one message, whatever it does with it.
constexpr int secondsOfSending = 3600;

FileFailure MayHaveBeenDelivered(const QString& path) {
    const QString reason = QCoreApplication::translate(
        "quellbox", "The program ended while the message was being sent. It may have been delivered.");
    return FileFailure(FileError(path, reason, FileProblem::Uncertain));
}

} // namespace

std::vector<FileFailure> BringBackInterrupted(FileSystem& files, const Folder& archive, const QDateTime& now) {
    std::vector<FileFailure> uncertain;
    try {
        const LeftBehind left = ReturnLeftBehind(files, archive, now.addSecs(-secondsOfSending));
        LogFailures({left.errors.begin(), left.errors.end()});
        for (const QString& name : left.returned) {
            uncertain.push_back(MayHaveBeenDelivered(archive.PathOf(name)));
        }
    } catch (const FileError& error) {
        LogFailures({FileFailure(error)});
    }
    return uncertain;
}

} // namespace quellbox
