#include "dialogs/frmFolders.h"

#include "mail/DisplayText.h"
#include "platform/FolderPath.h"
#include "platform/RuntimeError.h"
#include "settings/frmMessageBox.h"
#include "ui_frmFolders.h"

#include <QAbstractItemView>
#include <QDir>

namespace quellbox {

namespace {

// The pointer would flicker if it told of shorter waits.
constexpr int unnoticedMs = 100;

} // namespace

frmFolders::frmFolders(FolderPorts ports, AppState& state, QWidget* parent)
    : QDialog(parent), ports_(ports), state_(state), ui_(new Ui::frmFolders) {
    ui_->setupUi(this);
    ui_->drvList->view()->setAccessibleName(ui_->drvList->accessibleName());
    state_.FolderConfirmed = false;
    slow_.setSingleShot(true);
    slow_.setInterval(unnoticedMs);
    connect(&slow_, &QTimer::timeout, this, [this] { ui_->fraDevice->setCursor(Qt::BusyCursor); });
    // Assistive tools check it without a click.
    connect(ui_->chkShare, &QCheckBox::toggled, this, [this](bool isShare) {
        typesShare_ = isShare;
        chkShare_Click();
        if (!isShare) {
            TakeEntry(); // it may have come while a share was typed
        }
    });
    connect(ui_->txtShare, &QLineEdit::textEdited, this, [this] { typesShare_ = true; });
    connect(ui_->drvList, &QComboBox::activated, this, &frmFolders::drvList_Change);
    connect(ui_->dirList, &DirectoryList::Click, this, [this] {
        DropReading();
        dirList_Click();
    });
    connect(ui_->dirList, &DirectoryList::Open, this, &frmFolders::OpenEntry);
    connect(ui_->btnOK, &QPushButton::clicked, this, &frmFolders::btnOK_Click);
    connect(ui_->btnCancel, &QPushButton::clicked, this, &frmFolders::reject);
    FormLoad();
}

frmFolders::~frmFolders() = default;

void frmFolders::FormLoad() {
    const bool isShare = IsShareText(state_.SelectedFolder);
    if (isShare) {
        ui_->txtShare->setText(state_.SelectedFolder);
    }
    ui_->chkShare->setChecked(isShare);
    typesShare_ = false; // the user has not touched it yet
    chkShare_Click();
    Read([this, &volumes = ports_.volumes]() -> Showing {
        const std::vector<Volume> mounted = volumes.Mounted();
        return [this, mounted] { ShowVolumes(mounted); };
    });
}

// The drives do not wait for the folder, whose share may be out of reach: another one can be chosen meanwhile.
void frmFolders::ShowVolumes(const std::vector<Volume>& volumes) {
    volumes_ = volumes;
    for (const Volume& volume : volumes_) {
        ui_->drvList->addItem(DriveLabel(volume));
    }
    const QString folder = state_.SelectedFolder;
    ui_->drvList->setCurrentIndex(VolumeOf(volumes_, folder));
    Read([this, &files = ports_.files, volumes, folder]() -> Showing {
        const QString currentFolder = QDir::toNativeSeparators(QDir::currentPath());
        const FolderList list = ListFirstFolder(files, volumes, folder, currentFolder);
        return [this, list] { ShowFolder(list); };
    });
}

void frmFolders::ShowFolder(const FolderList& list) {
    ui_->dirList->SetFolders(list);
    volume_ = list.Count() > 0 ? VolumeOf(volumes_, list.Path(list.Opened())) : -1;
    ui_->drvList->setCurrentIndex(volume_);
    if (!typesShare_) {
        dirList_Click();
    }
}

void frmFolders::chkShare_Click() {
    const bool isShare = ui_->chkShare->isChecked();
    ui_->txtShare->setEnabled(isShare);
    ui_->fraDevice->setEnabled(!isShare);
    ui_->stbBottom->showMessage(isShare ? QStringLiteral("\\\\SERVER\\SHARE") : QStringLiteral("X:\\DIRECTORY"));
    UpdateOk();
}

void frmFolders::dirList_Click() {
    if (TakeEntry()) {
        ui_->stbBottom->showMessage(CleanseForDisplay(state_.SelectedFolder));
    }
}

bool frmFolders::TakeEntry() {
    const int index = ui_->dirList->ListIndex();
    if (index < 0) {
        return false;
    }
    state_.SelectedFolder = ui_->dirList->Folders().Path(index);
    return true;
}

// A folder that cannot be listed stays selected: it may still be the right one.
void frmFolders::OpenEntry() {
    dirList_Click();
    List(state_.SelectedFolder, [this](const Listing& listing) {
        if (listing.error.isEmpty()) {
            ShowFolder(listing.list);
        } else if (!typesShare_) {
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
            return;
        }
        if (!typesShare_) {
            ReportDrive(volume, listing.error);
        }
        ui_->drvList->setCurrentIndex(volume_);
    });
}

void frmFolders::ReportDrive(const Volume& volume, const QString& error) {
    const QString text = tr("Cannot use drive %1").arg(CleanseForDisplay(DriveOf(volume)));
    ShowMessageBox(QMessageBox::Warning,
                   {QStringLiteral("msgDrive"), windowTitle(), text + QStringLiteral("\n\n") + error}, this);
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
    reading_.emplace(
        ports_.pool, 1, [read = std::move(read)](size_t) { return read(); },
        [this](size_t, const Showing& show) {
            if (waits_) { // nothing else has been chosen meanwhile
                ShowWaiting(false);
                show();
            }
        },
        [](SeriesEnd) {}, oneAtATime);
    reading_->Start();
    ShowWaiting(true);
}

void frmFolders::DropReading() {
    ShowWaiting(false);
    ui_->drvList->setCurrentIndex(volume_);
}

void frmFolders::ShowWaiting(bool waits) {
    waits_ = waits;
    ui_->fraDevice->unsetCursor();
    waits ? slow_.start() : slow_.stop();
    UpdateOk();
}

// While a drive or folder is awaited nobody knows yet what OK would select; a typed share does not depend on it.
void frmFolders::UpdateOk() {
    ui_->btnOK->setEnabled(!waits_ || ui_->chkShare->isChecked());
}

} // namespace quellbox
