#include "app/ToolsDesk.h"

#include "app/DeliveryDesk.h"
#include "app/RefreshDesk.h"
#include "app/SetupDesk.h"
#include "app/WindowJobs.h"
#include "archive/RefreshTimer.h"
#include "dialogs/PickupTest.h"
#include "dialogs/frmCleansing.h"
#include "history/ActionNotes.h"
#include "history/Journal.h"
#include "mail/DisplayText.h"
#include "messages/FailureList.h"
#include "messages/KeptFolder.h"
#include "settings/DeliveryKeys.h"
#include "settings/frmMessageBox.h"

#include <QLocale>

namespace quellbox {

ToolsDesk::ToolsDesk(const WindowParts& parts, RefreshDesk& refresh, SetupDesk& setup, DeliveryDesk& delivery)
    : parts_(parts), refresh_(refresh), setup_(setup), delivery_(delivery),
      watch_(parts.ports.files, parts.ports.pool, parts.ports.clock) {
    connect(&parts_.jobs, &WindowJobs::Removing, this,
            [this](const QString& name) { parts_.panels.SetInfo(tr("Removing %1").arg(CleanseForDisplay(name))); });
    connect(&parts_.jobs, &WindowJobs::CleansingEnded, this,
            parts_.errors.Guarded(this, &ToolsDesk::jobs_CleansingEnded));
}

void ToolsDesk::Close() {
    watch_.Stop();
    *isClosed_ = true;
}

void ToolsDesk::mnuToolsCleansing_Click() {
    CleanseArchive();
}

bool ToolsDesk::ConfirmCleansing() {
    const MainPorts& ports = parts_.ports;
    frmCleansing dialog({ports.files, ports.pool, ports.clock}, parts_.state, &parts_.window);
    return dialog.exec() == QDialog::Accepted && parts_.state.CleansingConfirmed;
}

// Only a confirmation of this dialog counts, whatever an earlier one has left behind, and only for the archive that it
// named.
void ToolsDesk::CleanseArchive() {
    AppState& state = parts_.state;
    const QString archive = state.ArchiveDir;
    if (!ConfirmCleansing() || !parts_.jobs.EndRefresh() || state.ArchiveDir != archive) {
        return;
    }
    parts_.timer.Stop();
    state.LastAddedFile.clear();
    const std::shared_ptr<KeptFolder> kept = FolderToKeepIn(parts_.ports.files, state, parts_.ports.clock.Now());
    const auto record =
        parts_.journal.Begin({HistoryAction::Cleanse, archive, {}, kept ? QString(kept->Path()) : QString()});
    parts_.jobs.Cleanse(archive, state.CleansingDays, kept, record);
}

// No error of the run is reported but in the log. The list is made anew, and the number is what is left to be read.
void ToolsDesk::jobs_CleansingEnded(const CleansingResult& result) {
    parts_.failures.TakeAction(result.failures, parts_.ports.clock.Now());
    if (!parts_.jobs.IsClosed()) {
        refresh_.RefreshCleansed(result.count);
    }
    if (!parts_.jobs.IsClosed() && result.refused) {
        parts_.errors.Show(
            NoteRefusal(parts_.journal, HistoryAction::Cleanse, parts_.state.ArchiveDir, *result.refused));
    }
}

// The test goes on whatever became of the selection; the question shows the folder that is then in force.
void ToolsDesk::SendPickupTest() {
    const QString& way = parts_.state.Delivery;
    const bool usesFolder = way == QLatin1String(DeliveryKeys::pickup) || way == QLatin1String(DeliveryKeys::replay);
    if (usesFolder && !IsPickupSetUp(parts_.state.PickupDir, parts_.ports.program.Directory)) {
        parts_.panels.SetInfo(tr("Exchange Pickup Directory not setup yet."));
        setup_.mnuOpenFolderSelect_Click(1);
    }
    ConfirmWhenIdle();
}

// The selection of a directory is followed by a refresh, and that by another one if the user has asked for it.
void ToolsDesk::ConfirmWhenIdle() {
    if (!parts_.jobs.IsAtWork()) {
        ConfirmAndSend();
        return;
    }
    connect(&parts_.jobs, &WindowJobs::JobEnded, this, parts_.errors.Guarded(this, &ToolsDesk::ConfirmWhenIdle),
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

bool ToolsDesk::ConfirmPickupTest(const Transmitter* transmitter) {
    const RefreshTimer::Hold rest(parts_.timer);
    const QString title = transmitter == nullptr ? parts_.state.PickupDir.Text() : transmitter->Target();
    const QString question =
        transmitter == nullptr ? PickupTestQuestion() : TransmissionTestQuestion(transmitter->Target());
    return AskInMessageBox(QMessageBox::Warning, {QStringLiteral("msgConfirm"), WindowTitle(title), question},
                           &parts_.window);
}

void ToolsDesk::ConfirmAndSend() {
    if (parts_.jobs.IsClosed()) {
        return;
    }
    parts_.panels.SetInfo({});
    const std::shared_ptr<Transmitter> transmitter = delivery_.NewTransmitter();
    if (!ConfirmPickupTest(transmitter.get()) || !parts_.jobs.EndRefresh()) {
        return;
    }
    if (transmitter) {
        TransmitTest(transmitter);
    } else {
        WriteTest();
    }
}

void ToolsDesk::WriteTest() {
    const QString moment = GeneralDate(parts_.ports.clock.Now(), QLocale());
    const std::shared_ptr<ActionRecord> record =
        parts_.journal.Begin({HistoryAction::PickupTest, {}, parts_.state.PickupDir});
    const auto send = [&files = parts_.ports.files, user = parts_.state.UserName,
                       folder = QString(parts_.state.PickupDir), moment,
                       record] { return TryPickupTest(files, user, folder, moment, *record); };
    const QString folder = parts_.state.PickupDir;
    parts_.jobs.Call(WindowJobs::Effect::Changes, send, [this, folder, record](const WindowJobs::Error& error) {
        TellTest(error, tr("Testmessage send. Verify postmaster mailbox now!"));
        if (!error) {
            watch_.Start(PickupTestPath(folder), folder, record);
        }
    });
}

void ToolsDesk::TransmitTest(const std::shared_ptr<Transmitter>& transmitter) {
    const QByteArray message =
        TransmissionTestMessage(parts_.state.UserName, transmitter->Target(), parts_.ports.clock.Now());
    const std::shared_ptr<ActionRecord> record =
        parts_.journal.Begin({HistoryAction::PickupTest, {}, transmitter->Target()});
    const auto path = std::make_shared<QString>();
    const auto send = [transmitter, message, record, isClosed = isClosed_, path] {
        return TryTransmissionTest(
            *transmitter, message, *record, [&isClosed] { return !*isClosed; }, *path);
    };
    const QString folder = parts_.state.PickupDir;
    parts_.jobs.Call(WindowJobs::Effect::Changes, send, [this, folder, record, path](const WindowJobs::Error& error) {
        if (error || path->isEmpty()) {
            TellTest(error, tr("The mail server has taken the test message. Verify postmaster mailbox now!"));
            return;
        }
        TellTest(error, tr("Testmessage send. Verify postmaster mailbox now!"));
        watch_.Start(*path, folder, record);
    });
}

void ToolsDesk::TellTest(const WindowJobs::Error& error, const QString& success) {
    if (error) {
        parts_.errors.Show(*error);
    } else {
        parts_.panels.SetInfo(success);
    }
}

} // namespace quellbox
