#include "tests/messages/ListRows.h"
#include "tests/support/MainWindowFixture.h"

namespace quellbox {
namespace {

class MainBadInput : public MainWindowTest {};

TEST_F(MainBadInput, AMissingArchiveIsReportedInTheInfoPanelOnly) {
    Set("ArchiveDir", "/nowhere/Here/");
    OpenRefreshed();
    EXPECT_EQ(Panel("info"), "Archive /NOWHERE/HERE/ not found");
    EXPECT_EQ(Panel("count"), "");
    EXPECT_EQ(PanelView("size")->toolTip().toStdString(), "Time of last screen update");
    EXPECT_TRUE(errors_.isEmpty());
    EXPECT_EQ(Find<QTimer>("tmrRefresh")->interval(), 60'000);
}

TEST_F(MainBadInput, AnArchiveThatVanishesEmptiesTheList) {
    AddThree();
    OpenRefreshed();
    window_->State().ArchiveDir = QStringLiteral("/gone/");
    QTest::keyClick(List(), Qt::Key_F5);
    Settle();
    ASSERT_TRUE(WaitForRefreshes(2));
    EXPECT_EQ(Keys(), "");
    EXPECT_EQ(Panel("info"), "Archive /GONE/ not found");
}

TEST_F(MainBadInput, AHandEditedBooleanIsReportedAndTheProgramRunsOn) {
    AddThree();
    Set("StatusBar", "perhaps");
    OpenRefreshed();
    ASSERT_EQ(errors_.size(), 1);
    EXPECT_TRUE(errors_.first().contains(QStringLiteral("StatusBar"))) << errors_.first().toStdString();
    EXPECT_TRUE(errors_.first().contains(QStringLiteral("perhaps"))) << errors_.first().toStdString();
    EXPECT_TRUE(Action("mnuViewStatus")->isChecked());
    EXPECT_EQ(Keys(), "a.eml b.eml c.eml");
    EXPECT_EQ(SelectedKeys(), "a.eml");
}

TEST_F(MainBadInput, WhatIsWrongWithTheStoredSettingsIsToldOnceAtTheStart) {
    store_.Warn(QStringLiteral("Some lines are left out."));
    Set("StatusBar", "perhaps");
    OpenRefreshed();
    ASSERT_EQ(errors_.size(), 1);
    EXPECT_TRUE(errors_.first().startsWith(QStringLiteral("Some lines are left out.\n\n")));
    EXPECT_TRUE(errors_.first().contains(QStringLiteral("perhaps")));
    window_->close();
    EXPECT_EQ(errors_.size(), 1);
}

TEST_F(MainBadInput, WhatBecomesOfTheStoredSettingsMeanwhileIsToldOnClosing) {
    OpenRefreshed();
    store_.Warn(QStringLiteral("Some lines are left out."));
    window_->close();
    EXPECT_EQ(errors_, QStringList{QStringLiteral("Some lines are left out.")});
    EXPECT_FALSE(window_->isVisible());
}

TEST_F(MainBadInput, ErrorsGoToWhomTheCallerNames) {
    Set("StatusBar", "perhaps");
    QStringList told;
    MainPorts ports{files_, store_, clock_, shell_, pool_, volumes_, passwords_, program_};
    ports.reportError = [&told](const QString& text) { told += text; };
    window_ = std::make_unique<frmMain>(ports);
    window_->show();
    EXPECT_TRUE(QTest::qWaitFor([&told] { return !told.isEmpty(); }, patience));
    EXPECT_TRUE(told.first().contains(QStringLiteral("perhaps"))) << told.first().toStdString();
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainBadInput, MoreFilesThanCanBeCountedEndInAMessageBox) {
    const qint64 modified = noon_.toMSecsSinceEpoch() * 1'000'000;
    for (int number = 0; number < 32'767; ++number) {
        files_.Add(QStringLiteral("/archive/%1.eml").arg(number, 5, 10, QLatin1Char('0')), "Subject: x\n\n", modified);
    }
    Set("BulkMode", "True");
    Open();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !errors_.isEmpty(); }, 60'000));
    EXPECT_TRUE(errors_.first().contains(QStringLiteral("32,766"))) << errors_.first().toStdString();
    EXPECT_EQ(window_->Messages().Count(), 0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Find<QTimer>("tmrRefresh")->interval() == 60'000; }, patience));
    EXPECT_TRUE(List()->isEnabled());
    EXPECT_FALSE(Find<QWidget>("prbFiles")->isVisible());

    files_.Remove(QStringLiteral("/archive/00000.eml"));
    const int before = refreshes_;
    Action("mnuAcRefresh")->trigger();
    Settle();
    ASSERT_TRUE(WaitForRefreshes(before + 1));
    EXPECT_EQ(window_->Messages().Count(), 32'766);
    EXPECT_EQ(errors_.size(), 1);
}

TEST_F(MainBadInput, ASelectionOfTwoGibibytesIsReported) {
    AddThree();
    OpenRefreshed();
    for (const int row : {1, 2}) {
        window_->Messages().Update(row, WithSize(window_->Messages().Row(row), 1 << 30));
    }
    ClickRow(1);
    EXPECT_TRUE(errors_.isEmpty());
    EXPECT_EQ(Panel("size"), "1.074 GB");
    ClickRow(2, Qt::ControlModifier);
    EXPECT_EQ(errors_.size(), 1);
    ClickRow(0);
    EXPECT_EQ(Panel("info"), "a.eml");
    EXPECT_EQ(errors_.size(), 2); // the press still counts what was selected before
}

TEST_F(MainBadInput, AMessageThatIsNoneShowsItsErrorAsSubject) {
    AddMessage("a.eml", 2);
    files_.Add(QStringLiteral("/archive/broken.eml"), QByteArray(64, '\0'), noon_.toMSecsSinceEpoch() * 1'000'000);
    OpenRefreshed();
    ASSERT_EQ(Keys(), "a.eml broken.eml");
    EXPECT_NE(Cell(1, ColumnSubject), "");
    EXPECT_EQ(Cell(1, ColumnFrom), "");
    EXPECT_EQ(Cell(1, ColumnSize), "64");
}

TEST_F(MainBadInput, AFileThatCannotBeReadSaysWhyInTheSubject) {
    const auto add = [this](const char* name, const QByteArray& bytes, int minute) {
        files_.Add(QStringLiteral("/archive/") + QLatin1String(name), bytes,
                   noon_.addSecs(60 * minute).toMSecsSinceEpoch() * 1'000'000);
    };
    add("empty.eml", "", 5);
    add("text.eml", "just a text\nof two lines\n", 4);
    add("locked.eml", "Subject: never seen\n\n", 3);
    AddMessage("good.eml", 2);
    // The folder tells sizes and times, so that only opening the file fails.
    files_.LetFoldersTellStatus([](const QString&) { return true; });
    files_.FailPath(QStringLiteral("/archive/locked.eml"), QStringLiteral("The file is in use."));
    OpenRefreshed();
    ASSERT_EQ(Keys(), "empty.eml text.eml locked.eml good.eml");
    EXPECT_EQ(Cell(0, ColumnSubject), "The file is empty");
    EXPECT_EQ(Cell(1, ColumnSubject), "Not a mail message: no header field found");
    EXPECT_EQ(Cell(2, ColumnSubject), "/archive/locked.eml: The file is in use.");
    EXPECT_EQ(Cell(3, ColumnSubject), "about good.eml");
    for (const int row : {0, 1, 2}) {
        for (const Column column : {ColumnTo, ColumnFrom, ColumnScl}) {
            EXPECT_EQ(Cell(row, column), "") << row;
        }
    }
}

TEST_F(MainBadInput, AStoreThatCannotBeWrittenIsReportedOnClosing) {
    store_.SetUnwritable();
    Open();
    window_->close();
    EXPECT_EQ(errors_.size(), 1);
    EXPECT_FALSE(window_->isVisible());
}

TEST_F(MainBadInput, ClosingDuringAPassEndsIt) {
    for (int number = 0; number < 50; ++number) {
        AddMessage(qPrintable(QStringLiteral("%1.eml").arg(number, 2, 10, QLatin1Char('0'))), number);
    }
    files_.SetLatency(std::chrono::milliseconds(20));
    pool_.SetMost(1);
    Open();
    WhileBusy([this] { window_->close(); });
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->isVisible(); }, patience));
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::overrideCursor() == nullptr; }, patience));
    EXPECT_LT(window_->Messages().Count(), 50);
    EXPECT_EQ(refreshes_, 0);
}

} // namespace
} // namespace quellbox
