#pragma once

#include "dialogs/FolderList.h"
#include "settings/AppState.h"

#include <QDialog>
#include <QFutureWatcher>
#include <QTimer>

#include <functional>
#include <memory>

class QThreadPool;

namespace Ui {
class frmFolders;
}

namespace quellbox {

/// What the directory selection works with. Files and volumes outlive the pool, whose threads may still wait for a
/// slow folder when the dialog has gone.
struct FolderPorts {
    const FileSystem& files;
    const Volumes& volumes;
    QThreadPool& pool;
};

/// The dialog that selects a directory, on a drive or as a typed UNC path. It starts with `AppState::SelectedFolder`
/// and changes it; `AppState::FolderConfirmed` says afterwards whether it was closed with OK, and the folder then ends
/// with a separator. The caption is the caller's.
class frmFolders : public QDialog {
    Q_OBJECT

public:
    frmFolders(FolderPorts ports, AppState& state, QWidget* parent);
    ~frmFolders() override;

    /// Cancel, Escape and the close box.
    void reject() override;

    /// True while drives or directories that are to be shown are still read.
    bool IsWaiting() const { return waits_; }

private:
    struct Listing {
        FolderList list;
        QString error; // why the folder cannot be listed
    };
    using Showing = std::function<void()>;

    void FormLoad();
    void ShowVolumes(const std::vector<Volume>& volumes);
    void chkShare_Click();
    void drvList_Change(int index);
    void dirList_Click();
    bool TakeEntry();
    void OpenEntry();
    void btnOK_Click();
    void ShowFolder(const FolderList& list);
    void ReportDrive(const Volume& volume, const QString& error);
    void Read(std::function<Showing()> read);
    void List(const QString& folder, std::function<void(const Listing&)> show);
    void DropReading();
    void ShowWaiting(bool waits);
    void UpdateOk();

    FolderPorts ports_;
    AppState& state_;
    std::unique_ptr<Ui::frmFolders> ui_;
    std::vector<Volume> volumes_; // as in drvList
    int volume_ = -1;             // the one that dirList shows
    QFutureWatcher<Showing> reading_;
    QTimer slow_; // runs while what is read may still come soon
    bool waits_ = false;
    bool typesShare_ = false; // the user has turned to the share, which nothing that comes late may disturb
};

} // namespace quellbox
