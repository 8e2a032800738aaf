#include "console/Session.h"

#include "console/Aside.h"
#include "console/CommandLineTexts.h"
#include "delivery/ChosenDelivery.h"
#include "dialogs/PickupTest.h"
#include "settings/DeliveryKeys.h"
#include "settings/SettingsTable.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QPointer>
#include <QSysInfo>

#include <utility>

namespace quellbox {

namespace {

/// The folder that an option names; a relative one starts from the folder in which the program works.
/// One folder has one name in the history, however it is written. Where ".." leads, only the system knows.
Folder NamedFolder(const QString& text) {
    if (text.isEmpty()) {
        throw UsageError(QCoreApplication::translate("quellbox", "The name of a directory is empty."));
    }
    if (IsShareText(text)) {
        return text;
    }
    const QString path = QDir::current().absoluteFilePath(text);
    const QString real = path.contains(QLatin1String("..")) ? QFileInfo(path).canonicalFilePath() : QString();
    return QDir::toNativeSeparators(real.isEmpty() ? QDir::cleanPath(path) : real);
}

} // namespace

Session::Session(const ConsolePorts& ports, const std::optional<QString>& archive, const std::optional<QString>& pickup)
    : ports_(ports) {
    const QStringList warnings =
        ports_.store.TakeWarnings() + LoadSettings(ports_.store, ports_.program.Directory, state_);
    for (const QString& warning : warnings) {
        Tell(warning);
    }
    state_.UserName = ports_.account;
    if (archive) {
        state_.ArchiveDir = NamedFolder(*archive);
        isArchiveNamed_ = true;
    }
    if (pickup) {
        state_.PickupDir = NamedFolder(*pickup);
    }
}

Session::~Session() = default;

const Folder& Session::Archive() const {
    if (!isArchiveNamed_ && state_.ArchiveDir == ports_.program.Directory) {
        throw UnreachableError(QCoreApplication::translate(
            "quellbox", "No archive is set up. Choose one in the window, or name it by --archive."));
    }
    return state_.ArchiveDir;
}

void Session::RequirePickup() {
    const bool usesFolder = state_.Delivery == QLatin1String(DeliveryKeys::pickup) ||
                            state_.Delivery == QLatin1String(DeliveryKeys::replay);
    if (!usesFolder) {
        return;
    }
    if (!IsPickupSetUp(state_.PickupDir, ports_.program.Directory)) {
        throw UnreachableError(QCoreApplication::translate("quellbox", "Exchange Pickup Directory not setup yet."));
    }
    const bool exists = CallAside(
        *this, [&files = ports_.files, folder = state_.PickupDir.Text()] { return files.FolderExists(folder); });
    if (!exists) {
        throw UnreachableError(
            QCoreApplication::translate("quellbox", "Pickup directory %1 not found").arg(state_.PickupDir.Text()));
    }
}

Journal& Session::History() {
    if (!journal_) {
        journal_ = std::make_unique<Journal>(ports_.pool, ports_.clock,
                                             Journal::Place{ports_.program.HistoryFile, ports_.account,
                                                            QSysInfo::machineHostName(), state_.HistoryDays > 0});
        connect(journal_.get(), &Journal::Troubled, this, [this](const QString& text) {
            historyFailed_ = true;
            Tell(text);
        });
    }
    return *journal_;
}

std::shared_ptr<ReleaseWay> Session::NewWay() {
    std::shared_ptr<ReleaseWay> way = MakeReleaseWay(state_, ports_.files, ports_.clock, NewTransmitter());
    way_ = way;
    return way;
}

std::unique_ptr<Transmitter> Session::NewTransmitter() {
    if (NeedsPassword(state_) && !password_) {
        password_ = AskForPassword(ports_.passwords, state_, *this);
    }
    return MakeTransmitter(state_, ports_.files, password_);
}

void Session::Tell(const QString& text) {
    PrintConsoleError(text);
}

void Session::Tell(const std::vector<FileFailure>& failures) {
    for (const FileFailure& failure : failures) {
        Tell(failure.path + QStringLiteral(": ") + failure.reason);
    }
}

void Session::Await(const std::function<void(std::function<void()> done)>& start, const std::function<void()>& cancel) {
    if (IsInterrupted()) {
        throw CommandError(ExitCode::Interrupted, {});
    }
    QEventLoop loop;
    const auto hasEnded = std::make_shared<bool>(false);
    const auto end = [hasEnded, waiting = QPointer<QEventLoop>(&loop)] {
        *hasEnded = true;
        if (waiting) {
            waiting->quit();
        }
    };
    const auto stop = [&] {
        if (*hasEnded) {
            return;
        }
        cancel ? cancel() : end();
        if (const std::shared_ptr<ReleaseWay> way = way_.lock()) {
            way->Stop();
        }
    };
    connect(&ports_.interrupts, &Interrupts::Interrupted, &loop, stop);
    connect(this, &Session::OutputEnded, &loop, stop, Qt::QueuedConnection);
    start(end);
    if (!*hasEnded && (IsInterrupted() || outputHasEnded_)) {
        stop();
    }
    if (!*hasEnded) {
        loop.exec();
    }
}

void Session::EndOutput(bool isClosed) {
    if (!isClosed && !outputHasFailed_) {
        outputHasFailed_ = true;
        Tell(QCoreApplication::translate("quellbox", "The output cannot be written."));
    }
    outputHasEnded_ = true;
    Q_EMIT OutputEnded();
}

} // namespace quellbox
