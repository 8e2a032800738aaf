#include "dialogs/frmDirectoryList.h"
#include "dialogs/frmFolders.h"
#include "dialogs/frmOptions.h"
#include "platform/FolderPath.h"
#include "platform/ShareFileSystem.h"
#include "platform/UncPath.h"
#include "tests/support/MainWindowFixture.h"
#include "tests/support/NativePath.h"
#include "tests/support/RealFolderWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QWindow>

#include <utility>

namespace quellbox {
namespace {

/// Acts in the next directory dialogs, each in its turn, and keeps their captions.
class DialogDriver {
public:
    explicit DialogDriver(std::function<void(frmFolders&)> act) {
        timer_.callOnTimeout([this, act = std::move(act)] {
            auto* dialog = qobject_cast<frmFolders*>(QApplication::activeModalWidget());
            if (dialog != nullptr && dialog->isVisible()) {
                captions += dialog->windowTitle();
                act(*dialog);
            }
        });
        timer_.start(5);
    }

    QStringList captions;

private:
    QTimer timer_;
};

void Press(frmFolders& dialog, const char* name) {
    dialog.findChild<QPushButton*>(QLatin1String(name))->click();
}

void TypeShare(frmFolders& dialog, const QString& share) {
    auto* check = dialog.findChild<QCheckBox*>(QStringLiteral("chkShare"));
    if (!check->isChecked()) {
        check->click();
    }
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("txtShare"));
    edit->selectAll();
    QTest::keyClicks(edit, share);
    Press(dialog, "btnOK");
}

class MainFolders : public MainWindowTest {
protected:
    MainFolders() {
        AddMessage("old.eml", 1);
        files_.AddFolder(QStringLiteral("/"));
        files_.Add(QStringLiteral("/other/new.eml"), "Subject: new\n\n", noon_.toMSecsSinceEpoch() * 1'000'000);
        const QString root = NativePath(QStringLiteral("/"));
        volumes_.mounted = {{root, root, VolumeKind::Fixed}};
        Set("ArchiveDir", qPrintable(NativePath(QStringLiteral("/archive/"))));
    }

    /// Types the folder into the dialog that the menu entry opens.
    void Choose(const char* entry, const char* folder) {
        DialogDriver driver([folder](frmFolders& dialog) { TypeShare(dialog, NativePath(QLatin1String(folder))); });
        Action(entry)->trigger();
        Settle();
        EXPECT_EQ(driver.captions.size(), 1);
        captions_ += driver.captions;
    }

    std::string StoredFolder(const char* key) const { return SlashPath(Stored(key)).toStdString(); }
    std::string Title() const { return SlashPath(window_->windowTitle()).toStdString(); }
    std::string ArchiveInUse() const { return SlashPath(window_->State().ArchiveDir).toStdString(); }

    QStringList captions_;
};

TEST_F(MainFolders, AnotherArchiveIsStoredShownAndListedAtOnce) {
    OpenRefreshed();
    EXPECT_EQ(Keys(), "old.eml");
    Choose("mnuOpenFolderSelect0", "/other");
    EXPECT_EQ(captions_.join(QLatin1Char(' ')).toStdString(), "Select Archive Directory");
    EXPECT_EQ(StoredFolder("ArchiveDir"), "/other/");
    EXPECT_EQ(store_.FlushCount(), 1);
    EXPECT_EQ(Title(), "Quellbox - /other/");
    EXPECT_EQ(Keys(), "new.eml");
    EXPECT_FALSE(IsUnread(0));
    EXPECT_EQ(refreshes_, 2);
    EXPECT_EQ(Find<RawPane>("rtfRaw")->Text(), QString());
    EXPECT_EQ(window_->State().LastAddedFile.toStdString(), "new.eml");
}

TEST_F(MainFolders, TheSameArchiveConfirmedKeepsTheListAndWhatIsNew) {
    Set("AutoRefresh", "1");
    OpenRefreshed();
    QTest::keyClick(List(), Qt::Key_Escape);
    Settle();
    AddMessage("late.eml", 20);
    Choose("mnuOpenFolderSelect0", "/archive");
    EXPECT_EQ(Keys(), "late.eml old.eml");
    EXPECT_EQ(window_->State().LastAddedFile.toStdString(), "late.eml");
    AddMessage("later.eml", 30);
    Tick();
    EXPECT_EQ(Keys(), "later.eml late.eml old.eml");
    EXPECT_TRUE(IsUnread(0));
    EXPECT_FALSE(IsUnread(1));
    EXPECT_FALSE(IsUnread(2));
    EXPECT_EQ(StoredFolder("ArchiveDir"), "/archive/");
}

TEST_F(MainFolders, ThePickupDirectoryIsStoredAndTheListStays) {
    OpenRefreshed();
    AddMessage("late.eml", 20);
    Choose("mnuOpenFolderSelect1", "/other/");
    EXPECT_EQ(captions_.join(QLatin1Char(' ')).toStdString(), "Select Pickup Directory");
    EXPECT_EQ(StoredFolder("PickupDir"), "/other/");
    EXPECT_EQ(SlashPath(window_->State().PickupDir).toStdString(), "/other/");
    EXPECT_EQ(Title(), "Quellbox - /archive/");
    EXPECT_EQ(Keys(), "late.eml old.eml"); // refreshed all the same
    EXPECT_FALSE(IsUnread(0));
}

TEST_F(MainFolders, CancelAfterMovingAboutChangesNothingButRefreshes) {
    OpenRefreshed();
    AddMessage("late.eml", 20);
    DialogDriver driver([](frmFolders& dialog) {
        if (dialog.IsWaiting()) {
            return;
        }
        auto* list = dialog.findChild<DirectoryList*>(QStringLiteral("dirList"));
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Home);
        QTest::keyClick(list, Qt::Key_Return);
        Press(dialog, "btnCancel");
    });
    Action("mnuOpenFolderSelect0")->trigger();
    Settle();
    EXPECT_EQ(StoredFolder("ArchiveDir"), "/archive/");
    EXPECT_EQ(ArchiveInUse(), "/archive/");
    EXPECT_EQ(store_.FlushCount(), 0);
    EXPECT_EQ(Keys(), "late.eml old.eml");
}

TEST_F(MainFolders, CancelAfterMovingThroughDrivesGivesTheOldDirectoryBack) {
    for (const char* folder : {"/mnt/", "/mnt/usb/", "/mnt/usb/spam/"}) {
        files_.AddFolder(QLatin1String(folder));
    }
    volumes_.mounted.push_back(
        {QStringLiteral("STICK"), NativePath(QStringLiteral("/mnt/usb")), VolumeKind::Removable});
    OpenRefreshed();
    bool moving = false;
    QString selected;
    DialogDriver driver([&](frmFolders& dialog) {
        if (std::exchange(moving, true)) {
            return; // the event loop below runs this timer too
        }
        const auto isRead = [&dialog] { return !dialog.IsWaiting(); };
        EXPECT_TRUE(QTest::qWaitFor(isRead, patience));
        auto* drives = dialog.findChild<QComboBox*>(QStringLiteral("drvList"));
        drives->setFocus();
        QTest::keyClick(drives, Qt::Key_Down);
        EXPECT_TRUE(QTest::qWaitFor(isRead, patience));
        auto* list = dialog.findChild<DirectoryList*>(QStringLiteral("dirList"));
        list->setFocus();
        QTest::keyClick(list, Qt::Key_End);
        selected = window_->State().SelectedFolder;
        Press(dialog, "btnCancel");
    });
    QString shown;
    QTimer::singleShot(0, window_.get(), [&shown] {
        auto* options = qobject_cast<frmOptions*>(QApplication::activeModalWidget());
        ASSERT_NE(options, nullptr);
        options->findChild<QTabWidget*>(QStringLiteral("tbsOptions"))->setCurrentIndex(1);
        options->findChild<QPushButton*>(QStringLiteral("btnArchive"))->click();
        shown = options->findChild<QLineEdit*>(QStringLiteral("txtArchive"))->text();
        options->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    Action("mnuToolsOptions")->trigger();
    Settle();
    EXPECT_EQ(SlashPath(selected).toStdString(), "/mnt/usb/spam");
    EXPECT_EQ(SlashPath(shown).toStdString(), "/archive/");
    EXPECT_EQ(ArchiveInUse(), "/archive/");
    EXPECT_EQ(StoredFolder("ArchiveDir"), "/archive/");
    EXPECT_EQ(Title(), "Quellbox - /archive/");
    EXPECT_EQ(store_.FlushCount(), 0);
    EXPECT_EQ(refreshes_, 1);
}

TEST_F(MainFolders, TheTimerRestsWhileTheDialogIsOpenAndRunsAgain) {
    Set("RefreshInterval", "30");
    OpenRefreshed();
    auto* timer = Find<QTimer>("tmrRefresh");
    EXPECT_TRUE(timer->isActive());
    bool rested = false;
    DialogDriver driver([&](frmFolders& dialog) {
        rested = !timer->isActive();
        Press(dialog, "btnCancel");
    });
    Action("mnuOpenFolderSelect1")->trigger();
    Settle();
    EXPECT_TRUE(rested);
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 30'000);
}

TEST_F(MainFolders, ATimerThatStoodStillRunsAfterwards) {
    OpenRefreshed();
    auto* timer = Find<QTimer>("tmrRefresh");
    timer->stop();
    DialogDriver driver([](frmFolders& dialog) { Press(dialog, "btnCancel"); });
    Action("mnuOpenFolderSelect1")->trigger();
    Settle();
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 60'000);
}

TEST_F(MainFolders, ARefreshThatWasDueDoesNotStartTheTimerBehindTheDialog) {
    OpenRefreshed();
    auto* timer = Find<QTimer>("tmrRefresh");
    bool looked = false;
    DialogDriver driver([&](frmFolders& dialog) {
        window_->mnuAcRefresh_Click();
        looked = true;
        EXPECT_FALSE(timer->isActive());
        Press(dialog, "btnCancel");
    });
    Action("mnuOpenFolderSelect1")->trigger();
    Settle();
    EXPECT_TRUE(looked);
    EXPECT_TRUE(timer->isActive());
}

TEST_F(MainFolders, AFolderWithTheMarkOfWindowTitlesIsNamedInFull) {
    files_.Add(QString::fromUtf16(u"/x[*]\u202Ey/new.eml"), "Subject: new\n\n", 0);
    store_.SetValue(QStringLiteral("Settings"), QStringLiteral("ArchiveDir"), QString::fromUtf16(u"/x[*]\u202Ey/"));
    OpenRefreshed();
    EXPECT_EQ(window_->windowHandle()->title().toStdString(), "Quellbox - /x[*]y/");
}

TEST_F(MainFolders, AChoiceThatCannotBeStoredIsReportedAndHoldsForTheSession) {
    OpenRefreshed();
    store_.SetUnwritable();
    Choose("mnuOpenFolderSelect0", "/other");
    EXPECT_EQ(errors_.size(), 1);
    EXPECT_EQ(ArchiveInUse(), "/other/");
    EXPECT_EQ(Keys(), "new.eml");
    store_.SetUnwritable(false);
}

TEST_F(MainFolders, AShareThatDoesNotExistIsAcceptedAndNotFound) {
    OpenRefreshed();
    Choose("mnuOpenFolderSelect0", R"(\\nowhere\mail)");
    EXPECT_EQ(StoredFolder("ArchiveDir"), R"(\\nowhere\mail\)");
    EXPECT_EQ(Keys(), "");
    EXPECT_EQ(Panel("info"), R"(Archive \\NOWHERE\MAIL\ not found)");
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainFolders, RowsOfTheOldArchiveNeverStayOverAnUnreadableOne) {
    OpenRefreshed();
    files_.AddFolder(QStringLiteral("/locked/"));
    DialogDriver driver([this](frmFolders& dialog) {
        TypeShare(dialog, NativePath(QStringLiteral("/locked")));
        files_.FailPath(QStringLiteral("/locked/"), QStringLiteral("Permission denied"));
    });
    Action("mnuOpenFolderSelect0")->trigger();
    Settle();
    EXPECT_EQ(Keys(), "");
    EXPECT_EQ(window_->State().SelectedCount, 0);
}

TEST_F(MainFolders, WhileARefreshRunsNoFolderCanBeChosenAndEscapeEndsIt) {
    for (int number = 0; number < 200; ++number) {
        AddMessage(qPrintable(QStringLiteral("%1.eml").arg(number, 3, 10, QLatin1Char('0'))), number);
    }
    files_.SetLatency(std::chrono::milliseconds(20));
    pool_.SetMost(4);
    Open();
    bool wasBusy = false;
    WhileBusy([&] {
        wasBusy = true;
        EXPECT_FALSE(Action("mnuOpenFolderSelect0")->isEnabled());
        Action("mnuOpenFolderSelect0")->trigger();
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        QWidget* focus = window_->focusWidget();
        QTest::keyClick(focus != nullptr ? focus : window_.get(), Qt::Key_Escape);
        EXPECT_TRUE(window_->Jobs().IsIdle());
    });
    ASSERT_TRUE(WaitForRefreshes(1));
    EXPECT_TRUE(wasBusy);
    EXPECT_LT(window_->Messages().Count(), 200);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    files_.SetLatency(std::chrono::milliseconds(0));
    Choose("mnuOpenFolderSelect0", "/other");
    Settle();
    EXPECT_EQ(Keys(), "new.eml");
    EXPECT_EQ(Panel("count"), "1 messages");
    EXPECT_TRUE(List()->isEnabled());
}

class ShareWindow : public RealFolderWindowTest {
protected:
    void OpenOver(const Volumes& volumesInUse) {
        files = MakeFileSystem(volumesInUse);
        window = std::make_unique<frmMain>(
            MainPorts{*files, store, *clock, shell, pool, volumesInUse, passwords, program, nullptr, loadPatience});
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    void Choose(const char* entry, const QString& share) {
        DialogDriver driver([&](frmFolders& dialog) { TypeShare(dialog, share); });
        Command(entry)->trigger();
        Settle();
        EXPECT_EQ(driver.captions.size(), 1);
    }

    void ListAndUnblockOver(const QString& share) {
        Write(Archive(Name(1)), Mail(1));
        Write(Archive(Name(2)), Mail(2));
        Choose("mnuOpenFolderSelect0", share + QStringLiteral("\\archive"));
        EXPECT_EQ(window->State().ArchiveDir, share + QStringLiteral("\\archive\\"));
        window->Messages().sort(ColumnSubject, Qt::AscendingOrder);
        ASSERT_EQ(Keys(), QStringList({Name(1), Name(2)}));
        Choose("mnuOpenFolderSelect1", share + QStringLiteral("\\pickup"));
        Click(0);
        EXPECT_EQ(Raw()->FileName(), share + QStringLiteral("\\archive\\") + Name(1));
        EXPECT_TRUE(Raw()->Text().contains(QStringLiteral("Mail 1")));
        window->State().OutlookExpress = 1;
        Command("mnuMessageView")->setEnabled(true);
        Command("mnuMessageView")->trigger();
        Settle();
        ASSERT_EQ(shell.Opened().size(), 1);
        EXPECT_EQ(Read(shell.Opened().front()), Mail(1));
        Command("mnuActionsUnblock")->trigger();
        Settle();
        EXPECT_EQ(Keys(), QStringList{Name(2)});
        EXPECT_EQ(Read(Pickup(Name(1))), Mail(1));
        EXPECT_FALSE(QFile::exists(Archive(Name(1))));
    }
};

#ifdef _WIN32

TEST_F(ShareWindow, AShareIsListedAndUnblockedIntoAsItIs) {
    // The system shares each drive with administrators.
    QString share = QStringLiteral("\\\\localhost\\") + QDir::toNativeSeparators(root.path());
    share.replace(QLatin1Char(':'), QLatin1Char('$'));
    if (!QDir(share).exists()) {
        GTEST_SKIP() << "no " << share.toStdString();
    }
    const std::unique_ptr<Volumes> real = MakeVolumes();
    OpenOver(*real);
    ListAndUnblockOver(share);
    window.reset();
}

#else

/// Resolves by a mount table of its own.
class TableVolumes : public Volumes {
public:
    std::vector<Volume> Mounted() const override { return {{QStringLiteral("/"), QStringLiteral("/"), {}}}; }

    QString Resolve(const QString& path) const override {
        return IsShareText(path) ? FindInMountTable(path, table) : path;
    }

    QString table;
};

TEST_F(ShareWindow, AShareOfTheMountTableIsListedAndUnblockedInto) {
    TableVolumes table;
    QString mountPoint = QFileInfo(root.path()).canonicalFilePath();
    table.table = QStringLiteral("40 22 0:50 / %1 rw - cifs //nas/Mail rw\n").arg(mountPoint);
    OpenOver(table);
    ListAndUnblockOver(QStringLiteral("\\\\NAS\\mail"));
    window.reset();
}

TEST_F(ShareWindow, AShareThatTheDesktopMountedIsListedAndUnblockedInto) {
    const QTemporaryDir runtime;
    const QString mounts = runtime.path() + QStringLiteral("/gvfs/");
    ASSERT_TRUE(QDir().mkpath(mounts));
    ASSERT_TRUE(QFile::link(root.path(), mounts + QStringLiteral("smb-share:server=some-server,share=mail")));
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    const std::unique_ptr<Volumes> real = MakeVolumes();
    OpenOver(*real);
    ListAndUnblockOver(QStringLiteral("\\\\some-server\\mail"));
    window.reset();
    before.isNull() ? qunsetenv("XDG_RUNTIME_DIR") : qputenv("XDG_RUNTIME_DIR", before);
}

TEST_F(ShareWindow, AShareUnmountedBetweenTwoUnblocksLeavesTheSecondMessageWhereItIs) {
    TableVolumes table;
    table.table = QStringLiteral("40 22 0:50 / %1 rw - cifs //nas/Mail rw\n").arg(root.path());
    OpenOver(table);
    Write(Archive(Name(1)), Mail(1));
    Write(Archive(Name(2)), Mail(2));
    Choose("mnuOpenFolderSelect0", Archive());
    Choose("mnuOpenFolderSelect1", QStringLiteral("\\\\nas\\mail\\pickup"));
    window->Messages().sort(ColumnSubject, Qt::AscendingOrder);
    ASSERT_EQ(Keys(), QStringList({Name(1), Name(2)}));
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_EQ(Read(Pickup(Name(1))), Mail(1));
    table.table.clear(); // the folder where the share was mounted stays, and can be written to
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_EQ(Read(Archive(Name(2))), Mail(2));
    EXPECT_FALSE(QFile::exists(Pickup(Name(2))));
    window->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(Keys(), QStringList{Name(2)});
    window.reset();
}

TEST_F(ShareWindow, AShareUnmountedMeanwhileLeavesTheMessageWhereItIs) {
    TableVolumes table;
    table.table = QStringLiteral("40 22 0:50 / %1 rw - cifs //nas/Mail rw\n").arg(root.path());
    OpenOver(table);
    Write(Archive(Name(1)), Mail(1));
    Choose("mnuOpenFolderSelect0", Archive());
    Choose("mnuOpenFolderSelect1", QStringLiteral("\\\\nas\\mail\\pickup"));
    ASSERT_EQ(Keys(), QStringList{Name(1)});
    table.table.clear();
    Click(0);
    Command("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_EQ(Read(Archive(Name(1))), Mail(1));
    window->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(Keys(), QStringList{Name(1)});
    window.reset();
}

#endif

} // namespace
} // namespace quellbox
