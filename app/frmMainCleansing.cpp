#include "app/frmMain.h"

#include "app/StatusBarView.h"
#include "dialogs/Cleansing.h"
#include "dialogs/frmCleansing.h"

#include <QApplication>
#include <QElapsedTimer>

namespace quellbox {

namespace {

constexpr qint64 paintEveryMs = 40; // more pictures in a second than that nobody sees

/// The mouse pointer of a long operation, for as long as this lives.
class WaitPointer {
public:
    WaitPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitPointer() { QApplication::restoreOverrideCursor(); }
    WaitPointer(const WaitPointer&) = delete;
    WaitPointer& operator=(const WaitPointer&) = delete;
};

} // namespace

void frmMain::CleanseArchive() {
    if (busy_ || pass_) {
        return;
    }
    // Only a confirmation of this dialog counts, whatever an earlier one has left behind.
    if (frmCleansing(state_, this).exec() != QDialog::Accepted || !state_.CleansingConfirmed || closing_) {
        return;
    }
    tmrRefresh->stop();
    qint32 count = 0;
    Guarded([this, &count] {
        const WaitPointer pointer;
        state_.LastAddedFile.clear();
        count = RemoveOldMessages();
        RefreshArchive(false);
    });
    SetRefreshInterval();
    panels_.SetInfo(tr("%n Messages removed !", nullptr, count));
}

// No event runs meanwhile, so the panel is painted from here.
qint32 frmMain::RemoveOldMessages() {
    QElapsedTimer sincePainted;
    const auto showProgress = [this, &sincePainted](const QString& name) {
        panels_.SetInfo(tr("Removing %1").arg(name));
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
