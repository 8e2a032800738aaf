#include "app/frmMain.h"

#include "app/PointerShape.h"
#include "app/StatusBarView.h"
#include "dialogs/Cleansing.h"
#include "dialogs/frmCleansing.h"
#include "mail/DisplayText.h"

#include <QElapsedTimer>

namespace quellbox {

namespace {

constexpr qint64 paintEveryMs = 40; // more pictures in a second than that nobody sees

} // namespace

void frmMain::CleanseArchive() {
    if (busy_ || pass_) {
        return;
    }
    // Only a confirmation of this dialog counts, whatever an earlier one has left behind, and only for the archive that
    // it named: while a tick's pass outlasts the dialog, another one can be selected.
    const QString archive = state_.ArchiveDir;
    if (frmCleansing(state_, this).exec() != QDialog::Accepted || !state_.CleansingConfirmed || closing_ || pass_ ||
        state_.ArchiveDir != archive) {
        return;
    }
    tmrRefresh->stop();
    qint32 count = 0;
    Guarded([this, &count] {
        const PointerShape pointer(Qt::WaitCursor);
        state_.LastAddedFile.clear();
        count = RemoveOldMessages();
        RefreshAfterCleansing();
    });
    SetRefreshInterval();
    panels_.SetInfo(tr("%n Messages removed !", nullptr, count));
}

// No error of the run is reported but in the log. Rows of messages that have gone must not stay for want of a new list.
void frmMain::RefreshAfterCleansing() {
    try {
        RefreshArchive(false);
    } catch (const RuntimeError& error) {
        DropFailures({{state_.ArchiveDir, error.Text()}});
        ClearMessageView();
        UpdateSelectionStatus();
    }
}

// No event runs meanwhile, so the panel is painted from here.
qint32 frmMain::RemoveOldMessages() {
    QElapsedTimer sincePainted;
    const auto showProgress = [this, &sincePainted](const QString& name) {
        panels_.SetInfo(tr("Removing %1").arg(CleanseForDisplay(name)));
        if (!sincePainted.isValid() || sincePainted.hasExpired(paintEveryMs)) {
            stbBottom->ShowAtOnce();
            sincePainted.start();
        }
    };
    const CleansingResult result =
        RemoveArchivedMessages(ports_.files, ports_.clock, state_.ArchiveDir, state_.CleansingDays, showProgress);
    DropFailures(result.failures);
    return result.count;
}

} // namespace quellbox
