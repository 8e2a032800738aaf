#include "dialogs/frmFolders.h"

#include "dialogs/frmDirectoryList.h"
#include "tests/support/FakeVolumes.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/NativePath.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QMutex>
#include <QPushButton>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWaitCondition>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

/// Files of which one folder does not answer until it is told to.
class HangingFiles : public MemoryFileSystem {
public:
    ~HangingFiles() override { LetAnswer(); }

    void Hang(const char* folder) {
        const QMutexLocker lock(&mutex_);
        hanging_ = Text(folder);
    }

    void LetAnswer() {
        const QMutexLocker lock(&mutex_);
        hanging_.clear();
        answers_.wakeAll();
    }

    bool FolderExists(const QString& folder) const override {
        Wait(folder);
        return MemoryFileSystem::FolderExists(folder);
    }

    std::vector<FolderEntry> Entries(const QString& folder) const override {
        Wait(folder);
        return MemoryFileSystem::Entries(folder);
    }

private:
    void Wait(const QString& folder) const {
        const QMutexLocker lock(&mutex_);
        while (!hanging_.isEmpty() && SlashPath(folder).startsWith(hanging_)) {
            answers_.wait(&mutex_);
        }
    }

    mutable QMutex mutex_;
    mutable QWaitCondition answers_;
    QString hanging_;
};

class Folders : public testing::Test {
protected:
    static constexpr int patience = 10'000; // ms

    Folders() {
        for (const char* folder : {"/", "/home", "/home/joe", "/home/joe/mail", "/home/ann", "/mnt", "/mnt/usb",
                                   "/mnt/usb/spam", "/mnt/empty"}) {
            files_.AddFolder(Text(folder));
        }
        const QString dvd = NativePath(Text("/mnt/dvd"));
        volumes_.mounted = {{root_, root_, VolumeKind::Fixed},
                            {dvd, dvd, VolumeKind::Optical},
                            {Text("STICK"), NativePath(Text("/mnt/usb")), VolumeKind::Removable}};
    }

    ~Folders() override { files_.LetAnswer(); }

    /// Opens the dialog, and waits until it lists the folder.
    void Open(const char* folder) {
        OpenAtOnce(folder);
        EXPECT_TRUE(WaitForList());
    }

    void OpenAtOnce(const char* folder) {
        state_.SelectedFolder = NativePath(Text(folder));
        state_.FolderConfirmed = true;
        dialog_ = std::make_unique<frmFolders>(FolderPorts{files_, volumes_, pool_}, state_, nullptr);
        dialog_->setWindowTitle(Text("Select Archive Directory"));
        dialog_->show();
        dialog_->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
    }

    bool IsWaiting() const { return dialog_->IsWaiting(); }
    bool WaitForList() const {
        return QTest::qWaitFor([this] { return !IsWaiting(); }, patience);
    }
    bool WaitForDrives() {
        return QTest::qWaitFor([this] { return Drives()->count() > 0; }, patience);
    }
    bool HasBusyCursor() { return Find<QGroupBox>("fraDevice")->testAttribute(Qt::WA_SetCursor); }

    template <class T>
    T* Find(const char* name) {
        T* found = dialog_->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    DirectoryList* Dirs() { return Find<DirectoryList>("dirList"); }
    QComboBox* Drives() { return Find<QComboBox>("drvList"); }
    QPushButton* Button(const char* name) { return Find<QPushButton>(name); }
    std::string Status() { return SlashPath(Find<QStatusBar>("stbBottom")->currentMessage()).toStdString(); }
    std::string Folder() const { return SlashPath(state_.SelectedFolder).toStdString(); }
    static std::string CurrentFolder() {
        return SlashPath(QDir::toNativeSeparators(QDir::currentPath())).toStdString();
    }

    std::string Listed() {
        QStringList labels;
        for (int row = 0; row < Dirs()->model()->rowCount(); ++row) {
            labels += SlashPath(Dirs()->model()->index(row, 0).data().toString());
        }
        return labels.join(QLatin1Char(' ')).toStdString();
    }

    int RowOf(const char* label) {
        for (int row = 0; row < Dirs()->model()->rowCount(); ++row) {
            if (SlashPath(Dirs()->model()->index(row, 0).data().toString()) == QLatin1String(label)) {
                return row;
            }
        }
        ADD_FAILURE() << label << " is not listed";
        return 0;
    }

    QPoint CentreOf(const char* label) { return Dirs()->visualRect(Dirs()->model()->index(RowOf(label), 0)).center(); }
    void Click(const char* label) { QTest::mouseClick(Dirs()->viewport(), Qt::LeftButton, {}, CentreOf(label)); }

    void DoubleClick(const char* label) {
        const QPoint at = CentreOf(label);
        QTest::mouseClick(Dirs()->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(Dirs()->viewport(), Qt::LeftButton, {}, at);
        EXPECT_TRUE(WaitForList());
    }

    /// Picks a drive as the keyboard does in the closed drive list.
    void PickDrive(int index) {
        Drives()->setFocus();
        QTest::keyClick(Drives(), Qt::Key_Home);
        EXPECT_TRUE(WaitForList());
        for (int step = 0; step < index; ++step) {
            QTest::keyClick(Drives(), Qt::Key_Down);
            EXPECT_TRUE(WaitForList());
        }
    }

    /// Closes every message box that comes, and keeps its text.
    void WatchBoxes() {
        boxes_.callOnTimeout([this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                texts_ += SlashPath(box->text());
                EXPECT_EQ(box->textFormat(), Qt::PlainText);
                EXPECT_EQ(box->standardButtons(), QMessageBox::Ok);
                box->button(QMessageBox::Ok)->click();
            }
        });
        boxes_.start(10);
    }

    const QString root_ = NativePath(Text("/"));
    HangingFiles files_;
    FakeVolumes volumes_;
    AppState state_;
    ThreadWorkPool pool_;
    QTimer boxes_;
    QStringList texts_;
    std::unique_ptr<frmFolders> dialog_;
};

TEST_F(Folders, HasItsTextsAndStartsWithTheFolder) {
    Open("/home/joe/");
    EXPECT_EQ(Find<QGroupBox>("fraDevice")->title(), Text("Device / Directory"));
    EXPECT_EQ(Find<QGroupBox>("fraShare")->title(), Text("Share / UNC-path"));
    EXPECT_EQ(Find<QCheckBox>("chkShare")->text(), Text("Use &share (UNC path)"));
    EXPECT_EQ(Button("btnCancel")->text(), Text("&Cancel"));
    EXPECT_TRUE(Button("btnOK")->isDefault());
    EXPECT_FALSE(Find<QCheckBox>("chkShare")->isChecked());
    EXPECT_FALSE(Find<QLineEdit>("txtShare")->isEnabled());
    EXPECT_TRUE(Find<QGroupBox>("fraDevice")->isEnabled());
    EXPECT_EQ(Listed(), "/ home joe mail");
    EXPECT_EQ(Dirs()->ListIndex(), 2);
    EXPECT_EQ(SlashPath(Drives()->currentText()), Text("/"));
    EXPECT_EQ(SlashPath(Drives()->itemText(2)), Text("/mnt/usb [STICK]"));
    EXPECT_EQ(Status(), "/home/joe");
    EXPECT_FALSE(state_.FolderConfirmed);
}

TEST_F(Folders, AUncPathChecksTheShareAndFillsItsText) {
    Open(R"(\\SERVER\SHARE\spam\)");
    EXPECT_TRUE(Find<QCheckBox>("chkShare")->isChecked());
    EXPECT_EQ(Find<QLineEdit>("txtShare")->text(), Text(R"(\\SERVER\SHARE\spam\)"));
    EXPECT_TRUE(Find<QLineEdit>("txtShare")->isEnabled());
    EXPECT_FALSE(Find<QGroupBox>("fraDevice")->isEnabled());
    EXPECT_EQ(Status(), CurrentFolder()); // the list's own folder, as at every start
    Button("btnOK")->click();
    EXPECT_TRUE(state_.FolderConfirmed);
    EXPECT_EQ(Folder(), R"(\\SERVER\SHARE\spam\)");
}

TEST_F(Folders, TheSwitchEnablesOneSideAndShowsAnExample) {
    Open("/home/joe");
    Find<QCheckBox>("chkShare")->setFocus();
    QTest::keyClick(Find<QCheckBox>("chkShare"), Qt::Key_Space);
    EXPECT_TRUE(Find<QLineEdit>("txtShare")->isEnabled());
    EXPECT_FALSE(Find<QGroupBox>("fraDevice")->isEnabled());
    EXPECT_EQ(Status(), R"(\\SERVER\SHARE)");
    Find<QCheckBox>("chkShare")->click();
    EXPECT_FALSE(Find<QLineEdit>("txtShare")->isEnabled());
    EXPECT_TRUE(Find<QGroupBox>("fraDevice")->isEnabled());
    EXPECT_EQ(Status(), R"(X:\DIRECTORY)");
    Click("joe"); // still selected, and a click all the same
    EXPECT_EQ(Status(), "/home/joe");
}

TEST_F(Folders, TheSwitchWorksWithoutAClickToo) {
    Open("/home/joe");
    Find<QCheckBox>("chkShare")->toggle(); // as assistive tools do
    EXPECT_TRUE(Find<QLineEdit>("txtShare")->isEnabled());
    EXPECT_FALSE(Find<QGroupBox>("fraDevice")->isEnabled());
    EXPECT_EQ(Status(), R"(\\SERVER\SHARE)");
}

TEST_F(Folders, ATypedShareIsTakenWhateverItSays) {
    const std::string separator = QString(QDir::separator()).toStdString();
    for (const auto& [typed, taken] :
         std::vector<std::pair<const char*, std::string>>{{R"(\\NAS\Mail)", R"(\\NAS\Mail\)"},
                                                          {R"(\\NAS\Mail\)", R"(\\NAS\Mail\)"},
                                                          {R"(\\NAS\Mail/)", R"(\\NAS\Mail/\)"},
                                                          {"/mnt/no such place", "/mnt/no such place/"},
                                                          {"", separator}}) {
        Open("/home");
        Find<QCheckBox>("chkShare")->click();
        Find<QLineEdit>("txtShare")->setFocus();
        QTest::keyClicks(Find<QLineEdit>("txtShare"), NativePath(Text(typed)));
        QTest::keyClick(Find<QLineEdit>("txtShare"), Qt::Key_Return);
        EXPECT_FALSE(dialog_->isVisible());
        EXPECT_TRUE(state_.FolderConfirmed);
        EXPECT_EQ(Folder(), taken);
    }
}

TEST_F(Folders, AClickSelectsAndOkEndsItWithASeparator) {
    Open("/home");
    Click("joe");
    EXPECT_EQ(Folder(), "/home/joe");
    EXPECT_EQ(Status(), "/home/joe");
    EXPECT_EQ(Listed(), "/ home ann joe");
    Button("btnOK")->click();
    EXPECT_EQ(Folder(), "/home/joe/");
    EXPECT_TRUE(state_.FolderConfirmed);
}

TEST_F(Folders, ARootGetsNoSecondSeparator) {
    Open("/home/joe");
    Click("/");
    Button("btnOK")->click();
    EXPECT_EQ(Folder(), "/");
}

TEST_F(Folders, ADoubleClickOpensDownAndUp) {
    Open("/");
    DoubleClick("home");
    EXPECT_EQ(Listed(), "/ home ann joe");
    EXPECT_EQ(Folder(), "/home");
    DoubleClick("joe");
    EXPECT_EQ(Listed(), "/ home joe mail");
    DoubleClick("/");
    EXPECT_EQ(Listed(), "/ home mnt");
    EXPECT_EQ(Folder(), "/");
    EXPECT_TRUE(dialog_->isVisible());
}

TEST_F(Folders, TheKeyboardSelectsAndOpens) {
    Open("/home");
    Dirs()->setFocus();
    QTest::keyClick(Dirs(), Qt::Key_Down);
    QTest::keyClick(Dirs(), Qt::Key_Down);
    EXPECT_EQ(Status(), "/home/joe");
    QTest::keyClick(Dirs(), Qt::Key_Return);
    EXPECT_TRUE(WaitForList());
    EXPECT_EQ(Listed(), "/ home joe mail");
    EXPECT_TRUE(dialog_->isVisible());
    QTest::keyClick(Dirs(), Qt::Key_Home);
    EXPECT_EQ(Folder(), "/");
    QTest::keyClicks(Dirs(), Text("mai"));
    EXPECT_EQ(Folder(), "/home/joe/mail");
}

TEST_F(Folders, OpeningAFolderOfAnotherVolumeShowsItsDrive) {
    Open("/mnt");
    EXPECT_EQ(Drives()->currentIndex(), 0);
    DoubleClick("usb");
    EXPECT_EQ(Drives()->currentIndex(), 2);
    DoubleClick("/");
    EXPECT_EQ(Drives()->currentIndex(), 0);
}

TEST_F(Folders, ADriveShowsAndSelectsItsRoot) {
    volumes_.mounted.erase(volumes_.mounted.begin() + 1);
    Open("/home/joe");
    PickDrive(1);
    EXPECT_EQ(Listed(), "/ mnt usb spam");
    EXPECT_EQ(Folder(), "/mnt/usb");
    EXPECT_EQ(Status(), "/mnt/usb");
}

TEST_F(Folders, ADriveThatIsNotReadyIsReportedAndTheListsStay) {
    files_.AddFolder(Text("/mnt/dvd"));
    files_.FailPath(Text("/mnt/dvd"), Text("No medium found"));
    Open("/home/joe");
    WatchBoxes();
    Drives()->setFocus();
    QTest::keyClick(Drives(), Qt::Key_Down);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !texts_.isEmpty(); }, patience));
    EXPECT_EQ(texts_.join(Text("|")).toStdString(), "Cannot use drive /mnt/dvd\n\nNo medium found");
    EXPECT_EQ(Drives()->currentIndex(), 0);
    EXPECT_EQ(Listed(), "/ home joe mail");
    EXPECT_EQ(Folder(), "/home/joe");
    EXPECT_TRUE(dialog_->isVisible());
}

TEST_F(Folders, AFolderThatCannotBeReadStaysSelectedAndSaysWhy) {
    files_.FailPath(Text("/home/ann"), Text("Permission denied"));
    Open("/home");
    DoubleClick("ann");
    EXPECT_EQ(Listed(), "/ home ann joe");
    EXPECT_EQ(Folder(), "/home/ann");
    EXPECT_EQ(Status(), "/home/ann: Permission denied");
    files_.LoseFolder(Text("/home/joe"));
    DoubleClick("joe");
    EXPECT_EQ(Status(), "/home/joe: No such file or directory");
    EXPECT_TRUE(texts_.isEmpty());
}

TEST_F(Folders, AVanishedFolderGivesWayToTheCurrentOne) {
    Open("/home/gone/");
    EXPECT_EQ(Status(), CurrentFolder());
    EXPECT_EQ(Folder(), CurrentFolder());
    EXPECT_EQ(Drives()->currentIndex(), VolumeOf(volumes_.mounted, QDir::currentPath()));
}

/// Lets the process work in a folder that is gone, as far as the system allows that.
TEST_F(Folders, WithoutAnyFolderToStartFromTheListsAreEmptyAndAShareCanBeTyped) {
    const QString before = QDir::currentPath();
    const QTemporaryDir parent;
    const QString gone = parent.filePath(Text("gone"));
    ASSERT_TRUE(QDir().mkdir(gone) && QDir::setCurrent(gone));
    if (!QDir().rmdir(gone)) {
        QDir::setCurrent(before);
        GTEST_SKIP() << "the system keeps a folder that is in use";
    }
    volumes_.mounted.clear();
    Open(R"(\\nas\none\)");
    QDir::setCurrent(before);
    EXPECT_EQ(Listed(), "");
    EXPECT_EQ(Drives()->currentIndex(), -1);
    Find<QLineEdit>("txtShare")->selectAll();
    QTest::keyClicks(Find<QLineEdit>("txtShare"), Text(R"(\\nas\mail)"));
    Button("btnOK")->click();
    EXPECT_EQ(Folder(), R"(\\nas\mail\)");
}

TEST_F(Folders, EveryOtherWayOutIsCancel) {
    Open("/home");
    Click("joe");
    Button("btnCancel")->click();
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_FALSE(state_.FolderConfirmed);
    Open("/home");
    state_.FolderConfirmed = true;
    dialog_->close();
    EXPECT_FALSE(state_.FolderConfirmed);
    Open("/home");
    state_.FolderConfirmed = true;
    QTest::keyClick(Dirs(), Qt::Key_Escape);
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_FALSE(state_.FolderConfirmed);
}

TEST_F(Folders, ASlowFolderNeitherFreezesNorOverridesALaterChoice) {
    Open("/home");
    files_.SetLatency(std::chrono::milliseconds(400));
    Click("joe");
    QTest::mouseDClick(Dirs()->viewport(), Qt::LeftButton, {}, CentreOf("joe"));
    EXPECT_TRUE(IsWaiting());
    EXPECT_FALSE(Button("btnOK")->isEnabled());
    Click("ann");
    EXPECT_FALSE(IsWaiting());
    EXPECT_TRUE(Button("btnOK")->isEnabled());
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(Listed(), "/ home ann joe");
    EXPECT_EQ(Folder(), "/home/ann");
    DoubleClick("joe");
    EXPECT_EQ(Listed(), "/ home joe mail");
    EXPECT_EQ(Folder(), "/home/joe");
}

TEST_F(Folders, ASlowDriveCanBeLeftByCancelAndByAShare) {
    Open("/home");
    files_.SetLatency(std::chrono::milliseconds(400));
    Drives()->setFocus();
    QTest::keyClick(Drives(), Qt::Key_End);
    EXPECT_TRUE(IsWaiting());
    EXPECT_EQ(Drives()->currentIndex(), 2);
    Find<QCheckBox>("chkShare")->click();
    EXPECT_TRUE(Button("btnOK")->isEnabled());
    Find<QCheckBox>("chkShare")->click();
    EXPECT_FALSE(Button("btnOK")->isEnabled());
    Button("btnCancel")->click();
    dialog_.reset();
    EXPECT_FALSE(state_.FolderConfirmed);
    EXPECT_EQ(Folder(), "/home");
}

TEST_F(Folders, NothingIsWaitedForBeforeTheDialogIsThere) {
    state_.SelectedFolder = NativePath(Text("/home/joe"));
    dialog_ = std::make_unique<frmFolders>(FolderPorts{files_, volumes_, pool_}, state_, nullptr);
    pool_.WaitForDone();
    EXPECT_EQ(Drives()->count(), 0) << "what has come is shown by an event";
    EXPECT_TRUE(IsWaiting());
    EXPECT_TRUE(WaitForList());
    EXPECT_EQ(Listed(), "/ home joe mail");
}

TEST_F(Folders, TheDrivesAppearAndCanBeChosenWhileTheFolderDoesNotAnswer) {
    files_.Hang("/mnt/usb");
    OpenAtOnce("/mnt/usb/spam/");
    ASSERT_TRUE(WaitForDrives());
    EXPECT_EQ(Drives()->count(), 3);
    EXPECT_EQ(Drives()->currentIndex(), 2);
    EXPECT_TRUE(IsWaiting());
    EXPECT_FALSE(Button("btnOK")->isEnabled());
    EXPECT_EQ(Listed(), "");
    Drives()->setFocus();
    QTest::keyClick(Drives(), Qt::Key_Home);
    ASSERT_TRUE(WaitForList());
    EXPECT_EQ(Listed(), "/ home mnt");
    EXPECT_EQ(Folder(), "/");
    files_.LetAnswer();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(Listed(), "/ home mnt");
    EXPECT_EQ(Folder(), "/");
    EXPECT_EQ(Drives()->currentIndex(), 0);
}

TEST_F(Folders, TheBusyCursorTellsOnlyOfALongWait) {
    files_.Hang("/home/joe");
    Open("/home");
    Click("joe");
    QTest::mouseDClick(Dirs()->viewport(), Qt::LeftButton, {}, CentreOf("joe"));
    EXPECT_TRUE(IsWaiting());
    EXPECT_FALSE(HasBusyCursor());
    EXPECT_TRUE(QTest::qWaitFor([this] { return HasBusyCursor(); }, patience));
    EXPECT_TRUE(IsWaiting());
    files_.LetAnswer();
    EXPECT_TRUE(WaitForList());
    EXPECT_FALSE(HasBusyCursor());
}

TEST_F(Folders, AListingThatComesLateLeavesATypedShareAlone) {
    files_.Hang("/home");
    OpenAtOnce("/home/joe");
    ASSERT_TRUE(WaitForDrives());
    Find<QCheckBox>("chkShare")->click();
    QTest::keyClicks(Find<QLineEdit>("txtShare"), Text(R"(\\NAS\Mail)"));
    files_.LetAnswer();
    ASSERT_TRUE(WaitForList());
    EXPECT_EQ(Listed(), "/ home joe mail");
    EXPECT_EQ(Status(), R"(\\SERVER\SHARE)");
    EXPECT_EQ(Folder(), "/home/joe") << "as the caller has set it";
    EXPECT_EQ(Find<QLineEdit>("txtShare")->text(), Text(R"(\\NAS\Mail)"));
    Button("btnOK")->click();
    EXPECT_EQ(Folder(), R"(\\NAS\Mail\)");
}

TEST_F(Folders, AShareThatIsTypedOverTheFirstListingIsLeftAlone) {
    files_.Hang("/");
    OpenAtOnce(R"(\\nas\one\)");
    ASSERT_TRUE(WaitForDrives());
    QTest::keyClicks(Find<QLineEdit>("txtShare"), Text("x"));
    files_.LetAnswer();
    ASSERT_TRUE(WaitForList());
    EXPECT_EQ(Status(), R"(\\SERVER\SHARE)");
    EXPECT_EQ(Folder(), R"(\\nas\one\)");
}

TEST_F(Folders, WhoTurnsBackFromAShareGetsWhatIsListed) {
    files_.Hang("/home");
    OpenAtOnce("/home/gone");
    ASSERT_TRUE(WaitForDrives());
    Find<QCheckBox>("chkShare")->click();
    files_.LetAnswer();
    ASSERT_TRUE(WaitForList());
    EXPECT_EQ(Folder(), "/home/gone");
    Find<QCheckBox>("chkShare")->click();
    EXPECT_EQ(Status(), R"(X:\DIRECTORY)");
    Button("btnOK")->click();
    EXPECT_EQ(Folder(), CurrentFolder() + QString(QDir::separator()).toStdString());
}

TEST_F(Folders, ADriveThatFailsLateDoesNotDisturbWhoTypesAShare) {
    files_.AddFolder(Text("/mnt/dvd"));
    files_.FailPath(Text("/mnt/dvd"), Text("No medium found"));
    files_.Hang("/mnt/dvd");
    Open("/home/joe");
    WatchBoxes();
    Drives()->setFocus();
    QTest::keyClick(Drives(), Qt::Key_Down);
    Find<QCheckBox>("chkShare")->click();
    files_.LetAnswer();
    ASSERT_TRUE(WaitForList());
    EXPECT_TRUE(texts_.isEmpty());
    EXPECT_EQ(Status(), R"(\\SERVER\SHARE)");
    EXPECT_EQ(Drives()->currentIndex(), 0);
}

TEST_F(Folders, TheOpenFolderIsInSightFromTheStart) {
    QString deep = QStringLiteral("/mnt/usb");
    for (int depth = 0; depth < 60; ++depth) {
        deep += QStringLiteral("/d%1").arg(depth);
        files_.AddFolder(deep);
    }
    Open(qPrintable(deep));
    const QRect entry = Dirs()->visualRect(Dirs()->currentIndex());
    EXPECT_TRUE(Dirs()->viewport()->rect().contains(entry));
    EXPECT_EQ(Dirs()->currentIndex().data().toString(), Text("d59"));
}

TEST_F(Folders, AVeryLargeFolderIsListed) {
    for (int number = 0; number < 30'000; ++number) {
        files_.AddFolder(QStringLiteral("/mnt/usb/spam/%1").arg(number, 5, 10, QLatin1Char('0')));
    }
    Open("/mnt/usb/spam");
    EXPECT_EQ(Dirs()->model()->rowCount(), 30'004);
    Dirs()->setFocus();
    QTest::keyClick(Dirs(), Qt::Key_End);
    EXPECT_EQ(Status(), "/mnt/usb/spam/29999");
}

TEST_F(Folders, HostileNamesAreShownAsPlainText) {
    files_.AddFolder(QString::fromUtf16(u"/home/joe/<b>x\u202E&y<b>"));
    Open("/home/joe");
    EXPECT_EQ(Listed(), "/ home joe <b>x&y<b> mail");
    Click("<b>x&y<b>");
    EXPECT_EQ(Folder(), QString::fromUtf16(u"/home/joe/<b>x\u202E&y<b>").toStdString());
}

TEST_F(Folders, ALargerWindowGivesItsRoomToTheDirectories) {
    Open("/home");
    const QSize list = Dirs()->size();
    const QRect ok = Button("btnOK")->geometry();
    const QRect share = Find<QGroupBox>("fraShare")->geometry();
    dialog_->resize(dialog_->size() + QSize(200, 150));
    QCoreApplication::processEvents();
    EXPECT_EQ(Dirs()->size(), list + QSize(200, 150));
    EXPECT_EQ(Button("btnOK")->geometry(), ok.translated(200, 0));
    EXPECT_EQ(Find<QGroupBox>("fraShare")->geometry(), share.adjusted(0, 150, 200, 150));
}

} // namespace

} // namespace quellbox
