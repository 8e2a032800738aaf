#include "app/frmMain.h"

#include "dialogs/PickupTest.h"
#include "mail/DisplayText.h"
#include "platform/RuntimeError.h"
#include "settings/frmMessageBox.h"

#include <QLocale>

namespace quellbox {

namespace {

bool ConfirmPickupTest(const QString& pickupDir, RefreshTimer& timer, QWidget* parent) {
    const RefreshTimer::Hold rest(timer);
    return AskInMessageBox(QMessageBox::Warning,
                           {QStringLiteral("msgConfirm"), WindowTitle(pickupDir), PickupTestQuestion()}, parent);
}

WindowJobs::Error TryPickupTest(FileSystem& files, const QString& userName, const QString& pickupDir,
                                const QString& moment) {
    try {
        WritePickupTest(files, userName, pickupDir, moment);
        return std::nullopt;
    } catch (const RuntimeError& error) {
        return error.Text();
    }
}

} // namespace

// The test goes on whatever became of the selection; the question shows the folder that is then in force.
void frmMain::SendPickupTest() {
    if (!IsPickupSetUp(state_.PickupDir, ports_.program.Directory)) {
        panels_.SetInfo(tr("Exchange Pickup Directory not setup yet."));
        mnuOpenFolderSelect_Click(1);
    }
    if (jobs_.IsIdle()) {
        ConfirmAndSend();
        return;
    }
    // The selection is followed by a refresh.
    connect(
        &jobs_, &WindowJobs::JobEnded, this, [this] { Guarded([this] { ConfirmAndSend(); }); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

void frmMain::ConfirmAndSend() {
    if (closing_) {
        return;
    }
    panels_.SetInfo({});
    if (!ConfirmPickupTest(state_.PickupDir, timer_, this) || !EndRefresh()) {
        return;
    }
    const QString moment = GeneralDate(ports_.clock.Now(), QLocale());
    jobs_.Call([&files = ports_.files, user = state_.UserName, folder = state_.PickupDir,
                moment] { return TryPickupTest(files, user, folder, moment); },
               [this](const WindowJobs::Error& error) {
                   if (error) {
                       ReportError(*error);
                   } else {
                       panels_.SetInfo(tr("Testmessage send. Verify postmaster mailbox now!"));
                   }
               });
}

} // namespace quellbox
