#include "dialogs/frmFolders.h"

#include "mail/DisplayText.h"
#include "platform/FolderPath.h"
#include "platform/RuntimeError.h"
#include "settings/frmMessageBox.h"
#include "ui_frmFolders.h"

#include <QAbstractItemView>
#include <QDeadlineTimer>
#include <QDir>
#include <QThread>
#include <QtConcurrentRun>

namespace quellbox {

namespace {

// What is read sooner is shown at once, without a flicker; only longer waits let events run.
constexpr int unnoticedMs = 100;

} // namespace

frmFolders::frmFolders(FolderPorts ports, AppState& state, QWidget* parent)
    : QDialog(parent), ports_(ports), state_(state), ui_(new Ui::frmFolders) {
    ui_->setupUi(this);
    ui_->drvList->view()->setAccessibleName(ui_->drvList->accessibleName());
    state_.FolderConfirmed = false;
    connect(ui_->chkShare, &QCheckBox::clicked, this, &frmFolders::chkShare_Click);
    connect(ui_->drvList, &QComboBox::activated, this, &frmFolders::drvList_Change);
    connect(ui_->dirList, &DirectoryList::Click, this, [this] {
        DropReading();
        dirList_Click();
    });
    connect(ui_->dirList, &DirectoryList::Open, this, &frmFolders::OpenEntry);
    connect(ui_->btnOK, &QPushButton::clicked, this, &frmFolders::btnOK_Click);
    connect(ui_->btnCancel, &QPushButton::clicked, this, &frmFolders::reject);
    connect(&reading_, &QFutureWatcher<Showing>::finished, this, [this] {
        if (waits_ && reading_.future().resultCount() > 0) {
            const Showing show = reading_.result();
            ShowWaiting(false);
            show();
        }
    });
    FormLoad();
}

frmFolders::~frmFolders() = default;

void frmFolders::FormLoad() {
    const bool isShare = IsShareText(state_.SelectedFolder);
    if (isShare) {
        ui_->txtShare->setText(state_.SelectedFolder);
    }
    ui_->chkShare->setChecked(isShare);
    chkShare_Click();
    const QString currentFolder = QDir::toNativeSeparators(QDir::currentPath());
    Read([this, &files = ports_.files, &volumes = ports_.volumes, folder = state_.SelectedFolder, currentFolder] {
        const FolderChoice choice = OpenFolderChoice(files, volumes, folder, currentFolder);
        return [this, choice] { ShowChoice(choice); };
    });
}

void frmFolders::ShowChoice(const FolderChoice& choice) {
    volumes_ = choice.volumes;
    for (const Volume& volume : volumes_) {
        ui_->drvList->addItem(DriveLabel(volume));
    }
    ShowFolder(choice.list);
}

void frmFolders::ShowFolder(const FolderList& list) {
    ui_->dirList->SetFolders(list);
    volume_ = list.Count() > 0 ? VolumeOf(volumes_, list.Path(list.Opened())) : -1;
    ui_->drvList->setCurrentIndex(volume_);
    dirList_Click();
}

void frmFolders::chkShare_Click() {
    const bool isShare = ui_->chkShare->isChecked();
    ui_->txtShare->setEnabled(isShare);
    ui_->fraDevice->setEnabled(!isShare);
    ui_->stbBottom->showMessage(isShare ? QStringLiteral("\\\\SERVER\\SHARE") : QStringLiteral("X:\\DIRECTORY"));
    UpdateOk();
}

void frmFolders::dirList_Click() {
    const int index = ui_->dirList->ListIndex();
    if (index >= 0) {
        state_.SelectedFolder = ui_->dirList->Folders().Path(index);
        ui_->stbBottom->showMessage(CleanseForDisplay(state_.SelectedFolder));
    }
}

// A folder that cannot be listed stays selected: it may still be the right one.
void frmFolders::OpenEntry() {
    dirList_Click();
    List(state_.SelectedFolder, [this](const Listing& listing) {
        if (listing.error.isEmpty()) {
            ShowFolder(listing.list);
        } else {
            ui_->stbBottom->showMessage(
                CleanseForDisplay(state_.SelectedFolder + QStringLiteral(": ") + listing.error));
        }
    });
}

void frmFolders::drvList_Change(int index) {
    ShowWaiting(false);
    if (index == volume_) {
        return;
    }
    const Volume volume = volumes_[static_cast<size_t>(index)];
    List(volume.root, [this, volume](const Listing& listing) {
        if (listing.error.isEmpty()) {
            ShowFolder(listing.list);
        } else {
            ReportDrive(volume, listing.error);
        }
    });
}

void frmFolders::ReportDrive(const Volume& volume, const QString& error) {
    const QString text = tr("Cannot use drive %1").arg(CleanseForDisplay(DriveOf(volume)));
    ShowMessageBox(QMessageBox::Warning,
                   {QStringLiteral("msgDrive"), windowTitle(), text + QStringLiteral("\n\n") + error}, this);
    ui_->drvList->setCurrentIndex(volume_);
}

void frmFolders::btnOK_Click() {
    if (ui_->chkShare->isChecked()) {
        state_.SelectedFolder = ui_->txtShare->text();
    }
    // It always ends in its own separator, also where the system would take another one.
    const QChar separator = SeparatorOf(state_.SelectedFolder);
    if (!state_.SelectedFolder.endsWith(separator)) {
        state_.SelectedFolder += separator;
    }
    state_.FolderConfirmed = true;
    accept();
}

void frmFolders::reject() {
    state_.FolderConfirmed = false;
    QDialog::reject();
}

void frmFolders::List(const QString& folder, std::function<void(const Listing&)> show) {
    Read([&files = ports_.files, folder, show = std::move(show)]() -> Showing {
        Listing listing;
        try {
            listing.list = ListFolder(files, folder);
        } catch (const FileError& error) {
            listing.error = error.Reason();
        } catch (const std::exception& error) {
            listing.error = QString::fromUtf8(error.what());
        }
        return [show, listing] { show(listing); };
    });
}

// Another thread reads, because a share or a drive may take long to answer; what it returns is called on this one,
// unless something else is read first.
void frmFolders::Read(std::function<Showing()> read) {
    QFuture<Showing> future = QtConcurrent::run(&ports_.pool, std::move(read));
    const QDeadlineTimer unnoticed(unnoticedMs);
    while (!future.isFinished() && !unnoticed.hasExpired()) {
        QThread::usleep(500);
    }
    ShowWaiting(!future.isFinished());
    if (waits_) {
        reading_.setFuture(future);
    } else {
        future.takeResult()();
    }
}

void frmFolders::DropReading() {
    ShowWaiting(false);
    ui_->drvList->setCurrentIndex(volume_);
}

void frmFolders::ShowWaiting(bool waits) {
    waits_ = waits;
    if (waits) {
        ui_->fraDevice->setCursor(Qt::BusyCursor);
    } else {
        ui_->fraDevice->unsetCursor();
    }
    UpdateOk();
}

// While a drive or folder is awaited nobody knows yet what OK would select; a typed share does not depend on it.
void frmFolders::UpdateOk() {
    ui_->btnOK->setEnabled(!waits_ || ui_->chkShare->isChecked());
}

} // namespace quellbox
