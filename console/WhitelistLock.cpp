#include "console/WhitelistLock.h"

#include "console/Aside.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace quellbox {

namespace {

constexpr int lockWaitMs = 10'000;

QString FolderOf(const Session& session) {
    return QFileInfo(session.Ports().program.HistoryFile).path();
}

} // namespace

// It lies beside the history, since the registry of Windows has no folder.
WhitelistLock::WhitelistLock(Session& session) : file_(FolderOf(session) + QStringLiteral("/whitelist.lock")) {
    const auto lock = [this, folder = FolderOf(session)] {
        QDir().mkpath(folder);
        return file_.tryLock(lockWaitMs) || file_.error() != QLockFile::LockFailedError;
    };
    if (!lock()) {
        throw CommandError(ExitCode::SomeFailed,
                           QCoreApplication::translate("quellbox", "Another program is changing the whitelist."));
    }
}

} // namespace quellbox
