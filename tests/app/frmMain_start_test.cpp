#include "contents/frmRawPane.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/MainWindowFixture.h"
#include "tests/support/NativePath.h"

#include <QScreen>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <filesystem>
#include <fstream>

namespace quellbox {
namespace {

class MainStart : public MainWindowTest {};

TEST_F(MainStart, AnEmptyStoreGivesTwoThirdsOfTheScreenInItsUpperThird) {
    store_ = MemorySettingsStore();
    files_.AddFolder(QStringLiteral("/prog/"));
    Open();
    const QSize screen = window_->screen()->size();
    EXPECT_NEAR(window_->width(), screen.width() * 2 / 3, 1);
    EXPECT_NEAR(window_->height(), screen.height() * 2 / 3, 1);
    EXPECT_NEAR(window_->geometry().left(), (screen.width() - window_->width()) / 2, 1);
    EXPECT_NEAR(window_->geometry().top(), (screen.height() - window_->height()) / 3, 1);
    EXPECT_EQ(SlashPath(window_->State().ArchiveDir).toStdString(), "/prog/");
    EXPECT_EQ(SlashPath(window_->State().PickupDir).toStdString(), "/prog/");
    EXPECT_EQ(SlashPath(window_->windowTitle()).toStdString(), "Quellbox - /prog/");
    EXPECT_EQ(window_->State().AutoRefresh, 1);
    EXPECT_EQ(window_->State().RefreshInterval, 60);
    EXPECT_EQ(window_->State().FilterDays, 0);
    EXPECT_EQ(window_->State().ActiveFilterDays.toStdString(), "0");
    EXPECT_FALSE(Button("tlbMessages", "filter")->isChecked());
}

TEST_F(MainStart, AStoredLeftEdgeOfZeroIsNoneAndTheWindowIsCentred) {
    Set("MainLeft", "0");
    Set("MainTop", "450");
    Set("MainWidth", "9000");
    Set("MainHeight", "7500");
    Open();
    EXPECT_EQ(window_->size(), QSize(600, 500));
    EXPECT_EQ(window_->geometry().top(), 30);
    EXPECT_NEAR(window_->geometry().left(), (window_->screen()->size().width() - 600) / 2, 1);
    EXPECT_GT(window_->geometry().left(), 1);
}

TEST_F(MainStart, StoredPlacementIsRestored) {
    Set("MainLeft", "300");
    Set("MainTop", "450");
    Set("MainWidth", "10500");
    Set("MainHeight", "7500");
    Open();
    EXPECT_EQ(window_->geometry(), QRect(20, 30, 700, 500));
}

TEST_F(MainStart, ClosingSavesPlacementAndOptions) {
    Set("MainLeft", "300");
    Set("MainTop", "450");
    Set("MainWidth", "10500");
    Set("MainHeight", "7500");
    Open();
    Action("mnuViewToolbar")->trigger();
    Settle();
    window_->close();
    EXPECT_EQ(Stored("Toolbar").toStdString(), "False");
    EXPECT_EQ(Stored("StatusBar").toStdString(), "True");
    EXPECT_EQ(Stored("MainLeft").toStdString(), "300");
    EXPECT_EQ(Stored("MainHeight").toStdString(), "7500");
    EXPECT_EQ(store_.FlushCount(), 1);
}

TEST_F(MainStart, ClosedWhileMinimizedLeavesTheStoreAsItWas) {
    Set("Toolbar", "True");
    Set("RefreshInterval", "30");
    Set("MainLeft", "300");
    Set("MainTop", "450");
    Set("MainWidth", "10500");
    Set("MainHeight", "7500");
    Set("MainWindowState", "0");
    const QStringList keys = store_.Keys(QStringLiteral("Settings"));
    Open();
    Action("mnuViewToolbar")->trigger();
    Settle();
    window_->State().RefreshInterval = 99; // as the options dialog would
    window_->setGeometry(40, 50, 720, 510);
    window_->showMinimized();
    ASSERT_TRUE(QTest::qWaitFor([this] { return window_->isMinimized(); }, patience));
    window_->close();
    EXPECT_EQ(Stored("RefreshInterval").toStdString(), "30");
    EXPECT_EQ(Stored("MainLeft").toStdString(), "300");
    EXPECT_EQ(Stored("MainTop").toStdString(), "450");
    EXPECT_EQ(Stored("MainWidth").toStdString(), "10500");
    EXPECT_EQ(Stored("MainHeight").toStdString(), "7500");
    EXPECT_EQ(Stored("MainWindowState").toStdString(), "0");
    EXPECT_EQ(Stored("Toolbar").toStdString(), "True");
    EXPECT_EQ(store_.Keys(QStringLiteral("Settings")), keys);
    EXPECT_EQ(store_.FlushCount(), 0);
}

TEST_F(MainStart, WithoutADayWindowTheFilterButtonStartsReleased) {
    Set("FilterDays", "0");
    Set("FilterMessages", "1");
    Open();
    EXPECT_FALSE(Button("tlbMessages", "filter")->isChecked());
    EXPECT_EQ(window_->State().ActiveFilterDays.toStdString(), "0");
}

TEST_F(MainStart, WithADayWindowTheFilterButtonStartsAsStored) {
    Set("FilterDays", "2");
    Set("FilterMessages", "1");
    Open();
    EXPECT_TRUE(Button("tlbMessages", "filter")->isChecked());
    EXPECT_EQ(window_->State().ActiveFilterDays.toStdString(), "2");
}

TEST_F(MainStart, TogglesStartAsStored) {
    Set("StatusBar", "False");
    Set("Toolbar", "0");
    Set("Contents", "false");
    Set("HideMinimized", "True");
    Set("BulkMode", "1");
    Set("ContentsAttachment", "1");
    Set("ContentsCollapse", "1");
    Open();
    EXPECT_FALSE(Action("mnuViewStatus")->isChecked());
    EXPECT_FALSE(Action("mnuViewToolbar")->isChecked());
    EXPECT_FALSE(Action("mnuViewContents")->isChecked());
    EXPECT_TRUE(Action("mnuViewHide")->isChecked());
    EXPECT_TRUE(Action("mnuViewBulk")->isChecked());
    EXPECT_TRUE(Action("mnuViewFormat")->isChecked());
    EXPECT_TRUE(Button("tlbContents", "attachment")->isChecked());
    EXPECT_TRUE(Button("tlbContents", "collapse")->isChecked());
}

TEST_F(MainStart, TheListIsEmptyUntilTheFirstTick) {
    AddThree();
    Open();
    EXPECT_EQ(Keys(), "");
    const auto* timer = Find<QTimer>("tmrRefresh");
    EXPECT_EQ(timer->interval(), 500);
    EXPECT_TRUE(timer->isActive());
    ASSERT_TRUE(WaitForRefreshes(1));
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
}

TEST_F(MainStart, TheFirstTickSelectsTheFirstMessage) {
    AddThree();
    OpenRefreshed();
    EXPECT_EQ(SelectedKeys(), "a.eml");
    EXPECT_EQ(List()->currentIndex().row(), 0);
    EXPECT_EQ(Panel("info"), "a.eml");
    EXPECT_EQ(window_->State().SelectedCount, 1);
    EXPECT_EQ(Find<QTimer>("tmrRefresh")->interval(), 60'000);
    EXPECT_EQ(window_->State().LastRefreshDay, 10);
    EXPECT_EQ(Find<RawPane>("rtfRaw")->FileName().toStdString(), "/archive/a.eml");
    EXPECT_TRUE(Find<RawPane>("rtfRaw")->Text().contains(QStringLiteral("about a.eml")));
    const auto* tree = Find<QTreeWidget>("trvMessage");
    ASSERT_GT(tree->topLevelItemCount(), 0);
    EXPECT_EQ(tree->topLevelItem(0)->text(0).toStdString(), "MESSAGE");
}

TEST_F(MainStart, TheFirstOneSaysWhereToChooseTheDirectories) {
    Set("ArchiveDir", qPrintable(program_.Directory));
    files_.Add(program_.Directory + QStringLiteral("quellbox"), "a program");
    OpenRefreshed();
    const auto* hint = Find<QLabel>("lblHint");
    EXPECT_TRUE(hint->isVisible());
    EXPECT_TRUE(hint->text().contains(QStringLiteral("File > Folder > Archive...")));
    EXPECT_EQ(List()->accessibleDescription(), hint->text());
    EXPECT_TRUE(List()->rect().contains(hint->geometry()));
    EXPECT_EQ(Keys(), "quellbox") << "the folder is listed all the same";
}

TEST_F(MainStart, TheKeyboardBeginsInTheList) {
    Set("ArchiveDir", "/missing/");
    OpenRefreshed();
    EXPECT_EQ(window_->focusWidget(), List());
}

TEST_F(MainStart, LaterOnesDoNot) {
    AddThree();
    OpenRefreshed();
    EXPECT_FALSE(Find<QLabel>("lblHint")->isVisible());
}

TEST_F(MainStart, FourMenuEntriesHavePictures) {
    Open();
    QStringList pictured;
    for (const QAction* action : window_->findChildren<QAction*>(QRegularExpression(QStringLiteral("^mnu")))) {
        if (!action->icon().isNull()) {
            pictured += action->objectName();
        }
    }
    EXPECT_EQ(pictured.size(), 4) << pictured.join(QLatin1Char(' ')).toStdString();
}

TEST_F(MainStart, TheArchiveOfTheCommandLineIsListedAndNotStored) {
    files_.Add(QStringLiteral("/other/only.eml"), "Subject: only\n\n");
    AddThree();
    frmMain window({files_, store_, clock_, shell_, pool_, volumes_, passwords_, program_}, QStringLiteral("/other/"));
    EXPECT_EQ(window.windowTitle().toStdString(), "Quellbox - /other/");
    window.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.State().SelectedCount == 1; }, patience));
    EXPECT_EQ(window.Messages().Count(), 1);
    EXPECT_EQ(window.Messages().Row(0).Key().toStdString(), "only.eml");
    EXPECT_EQ(window.State().PickupDir.Text().toStdString(), "/pickup/");
    window.close();
    EXPECT_EQ(store_.FlushCount(), 1);
    EXPECT_EQ(Stored("ArchiveDir").toStdString(), "/archive/");
}

TEST_F(MainStart, RealFoldersAreListedNewestFirst) {
    const QTemporaryDir folder;
    const std::filesystem::path path = folder.path().toStdString();
    const auto now = std::filesystem::file_time_type::clock::now();
    for (const auto& [name, age] : {std::pair{"old.eml", 2}, {"new.eml", 1}}) {
        std::ofstream(path / name) << "Subject: about " << name << "\n\n";
        std::filesystem::last_write_time(path / name, now - std::chrono::hours(age));
    }
    Set("ArchiveDir", qPrintable(folder.path() + QLatin1Char('/')));
    const std::unique_ptr<FileSystem> disk = MakeLocalFileSystem();
    frmMain window({*disk, store_, clock_, shell_, pool_, volumes_, passwords_, program_});
    window.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.Messages().Count() == 2; }, patience));
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.State().SelectedCount == 1; }, patience));
    EXPECT_EQ(window.Messages().Row(0).Cell(ColumnSubject).toStdString(), "about new.eml");
    EXPECT_EQ(window.Messages().Row(1).Key().toStdString(), "old.eml");
    pool_.WaitForDone(); // its readers use the folder
}

} // namespace
} // namespace quellbox
