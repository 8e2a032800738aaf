#include "app/frmMain.h"

#include "dialogs/frmCleansing.h"

#include <utility>

namespace quellbox {

void frmMain::mnuToolsCleansing_Click() {
    CleanseArchive();
}

// Only a confirmation of this dialog counts, whatever an earlier one has left behind, and only for the archive that it
// named.
void frmMain::CleanseArchive() {
    const QString archive = state_.ArchiveDir;
    if (frmCleansing(state_, this).exec() != QDialog::Accepted || !state_.CleansingConfirmed || !EndRefresh() ||
        state_.ArchiveDir != archive) {
        return;
    }
    timer_.Stop();
    state_.LastAddedFile.clear();
    jobs_.Cleanse(archive, state_.CleansingDays);
}

// No error of the run is reported but in the log. The list is made anew, and the number is what is left to be read.
void frmMain::jobs_CleansingEnded(const CleansingResult& result) {
    LogFailures(result.failures);
    if (closing_) {
        return;
    }
    cleansed_ = result.count;
    connect(
        this, &frmMain::Refreshed, this,
        [this] {
            panels_.SetInfo(tr("%n Messages removed !", nullptr, *cleansed_));
            cleansed_.reset();
        },
        Qt::SingleShotConnection);
    RefreshArchive(false);
}

} // namespace quellbox
