#include "app/frmMain.h"

#include "app/PointerShape.h"
#include "dialogs/frmFolders.h"
#include "settings/SettingsTable.h"

#include <QApplication>

namespace quellbox {

QString frmMain::SelectDirectory(qint16 index) {
    if (index != 0 && index != 1) {
        return {};
    }
    const bool isArchive = index == 0;
    Folder& directory = isArchive ? state_.ArchiveDir : state_.PickupDir;
    state_.SelectedFolder = directory;
    {
        std::optional<PointerShape> arrow; // an hourglass would lie over the dialog too
        if (hourglassIsShown_) {
            arrow.emplace(Qt::ArrowCursor);
        }
        QWidget* above = QApplication::activeModalWidget();
        frmFolders dialog({ports_.files, ports_.volumes, ports_.pool}, state_, above != nullptr ? above : this);
        dialog.setWindowTitle(isArchive ? tr("Select Archive Directory") : tr("Select Pickup Directory"));
        dialog.exec();
    }
    if (!state_.FolderConfirmed) {
        return directory;
    }
    const bool isOther = directory != state_.SelectedFolder;
    directory = state_.SelectedFolder;
    if (isArchive) {
        UpdateMainCaption();
        if (isOther) {
            LeaveArchive();
        }
    }
    // The choice holds for this session even when it cannot be stored.
    Guarded([this, isArchive, &directory] {
        WriteSetting(ports_.store, isArchive ? QStringLiteral("ArchiveDir") : QStringLiteral("PickupDir"), directory);
        ports_.store.Flush();
    });
    return directory;
}

// The rows go at once: nothing may be done to the messages of one archive in another.
void frmMain::LeaveArchive() {
    state_.LastAddedFile.clear();
    state_.LastArrival = {};
    jobs_.GiveUp();
    ClearMessageView();
    contents_->Forget(); // readers that are stuck in the archive that was left are none of the other's
    UpdateSelectionStatus();
}

void frmMain::mnuOpenFolderSelect_Click(qint16 index) {
    const RefreshTimer::Hold rest(timer_);
    Guarded([this, index] {
        SelectDirectory(index);
        RefreshArchive(false);
    });
}

} // namespace quellbox
