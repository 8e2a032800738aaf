#include "console/Session.h"

#include "delivery/ChosenDelivery.h"
#include "dialogs/PickupTest.h"
#include "mail/DisplayText.h"
#include "settings/DeliveryKeys.h"
#include "settings/SettingsTable.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QPointer>
#include <QSysInfo>

#include <utility>

namespace quellbox {

namespace {

/// The folder that an option names; a relative one starts from the folder in which the program works.
Folder NamedFolder(const QString& text) {
    return IsShareText(text) ? text : QDir::toNativeSeparators(QDir::current().absoluteFilePath(text));
}

} // namespace

Session::Session(const ConsolePorts& ports, const QString& archive, const QString& pickup) : ports_(ports) {
    const QStringList warnings =
        ports_.store.TakeWarnings() + LoadSettings(ports_.store, ports_.program.Directory, state_);
    for (const QString& warning : warnings) {
        Tell(warning);
    }
    state_.UserName = ports_.account;
    if (!archive.isEmpty()) {
        state_.ArchiveDir = NamedFolder(archive);
    }
    if (!pickup.isEmpty()) {
        state_.PickupDir = NamedFolder(pickup);
    }
}

Session::~Session() = default;

void Session::RequireArchiveSetUp() const {
    if (state_.ArchiveDir == ports_.program.Directory) {
        throw UnreachableError(QCoreApplication::translate("quellbox", "Archive directory not set up yet."));
    }
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
    if (!ports_.files.FolderExists(state_.PickupDir)) {
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
    WriteError("quellboxctl: " + CleanseForDisplay(text).toUtf8() + '\n');
}

void Session::Tell(const std::vector<FileFailure>& failures) {
    for (const FileFailure& failure : failures) {
        Tell(failure.path + QStringLiteral(": ") + failure.reason);
    }
}

void Session::Await(const std::function<void(std::function<void()> done)>& start, const std::function<void()>& cancel) {
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
