#include "dialogs/PickupTest.h"
#include "tests/support/MainWindowFixture.h"
#include "tests/support/NativePath.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QWindow>

namespace quellbox {
namespace {

/// The main window, whose pickup test is asked for; a directory selection that opens is cancelled, unless there is a
/// directory to select.
class MainPickupTest : public MainWindowTest {
protected:
    MainPickupTest() {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        modals_.callOnTimeout([this] { DriveModal(); });
        modals_.start(5);
    }

    ~MainPickupTest() override { QLocale::setDefault(QLocale::system()); }

    void OpenIn(const char* pickup) {
        store_.SetValue(QStringLiteral("Settings"), QStringLiteral("PickupDir"), NativePath(QLatin1String(pickup)));
        OpenRefreshed();
        QObject::connect(&window_->Panels(), &StatusPanels::Changed,
                         [this] { infos_ += window_->Panels().Info().text; });
        window_->Panels().SetInfo(QStringLiteral("before"));
    }

    /// Runs the test; `answer` closes the question.
    void Run(std::function<void(QMessageBox&)> answer) {
        answer_ = std::move(answer);
        Action("mnuToolsTest")->trigger();
        Settle();
    }

    static void Yes(QMessageBox& box) { box.button(QMessageBox::Yes)->click(); }
    static void No(QMessageBox& box) { box.button(QMessageBox::No)->click(); }

    std::string Info() const { return window_->Panels().Info().text.toStdString(); }
    bool SaysNotSetUp() const { return infos_.contains(QStringLiteral("Exchange Pickup Directory not setup yet.")); }
    std::string Written() const { return files_.Bytes(file_).toStdString(); }
    bool IsWritten() const { return files_.FileExists(file_); }

    const QString file_ = QStringLiteral("/pickup/quellbox.eml");
    const std::string sent_ = "Testmessage send. Verify postmaster mailbox now!";
    bool rested_ = true; ///< the refresh timer did whenever something was open
    int questions_ = 0;
    QString question_;
    QString caption_;
    QStringList infos_;  ///< each text of the panel "info"
    QStringList opened_; ///< the captions of all dialogs, in their order
    QString select_;

private:
    void DriveModal() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->isVisible() || dialog->objectName() == QLatin1String("msgError")) {
            return;
        }
        opened_ += SlashPath(dialog->windowTitle());
        rested_ = rested_ && !Find<QTimer>("tmrRefresh")->isActive();
        auto* box = qobject_cast<QMessageBox*>(dialog);
        if (box == nullptr) {
            DriveSelection(*dialog);
            return;
        }
        EXPECT_EQ(box->objectName(), QStringLiteral("msgConfirm"));
        EXPECT_EQ(box->icon(), QMessageBox::Warning);
        EXPECT_EQ(box->textFormat(), Qt::PlainText);
        EXPECT_EQ(box->standardButtons(), QMessageBox::Yes | QMessageBox::No);
        EXPECT_TRUE(box->defaultButton() == box->button(QMessageBox::No));
        EXPECT_EQ(window_->Panels().Info().text, QString());
        ++questions_;
        question_ = box->text();
        caption_ = SlashPath(box->windowTitle());
        answer_(*box);
    }

    void DriveSelection(QDialog& dialog) {
        EXPECT_EQ(dialog.objectName(), QStringLiteral("frmFolders"));
        EXPECT_EQ(Info(), "Exchange Pickup Directory not setup yet.");
        if (select_.isEmpty()) {
            dialog.reject();
            return;
        }
        dialog.findChild<QCheckBox*>(QStringLiteral("chkShare"))->click();
        dialog.findChild<QLineEdit*>(QStringLiteral("txtShare"))->setText(select_);
        dialog.findChild<QPushButton*>(QStringLiteral("btnOK"))->click();
    }

    QTimer modals_;
    std::function<void(QMessageBox&)> answer_;
};

} // namespace

TEST_F(MainPickupTest, YesWritesTheMessage) {
    OpenIn("/pickup/");
    Run(Yes);
    EXPECT_EQ(questions_, 1);
    EXPECT_EQ(question_.toStdString(),
              "OK to send test message to postmaster?\n\nThis will verify the pickup directory setup.");
    EXPECT_EQ(caption_, QStringLiteral("/pickup/"));
    EXPECT_EQ(Info(), sent_);
    EXPECT_FALSE(SaysNotSetUp());
    ASSERT_TRUE(IsWritten());
    const QString moment = GeneralDate(clock_.Now(), QLocale());
    EXPECT_TRUE(moment.startsWith(QStringLiteral("10.03.26 13:00:00"))) << moment.toStdString();
    EXPECT_EQ(files_.Bytes(file_),
              PickupTestMessage(QStringLiteral("tester"), NativePath(QStringLiteral("/pickup/")), moment));
    EXPECT_NE(Written().find("Subject: tester is testing the Exchange pickup folder\r\n"), std::string::npos);
    EXPECT_TRUE(errors_.isEmpty());
}

TEST_F(MainPickupTest, WhateverIsNotYesWritesNothing) {
    OpenIn("/pickup/");
    const std::vector<std::function<void(QMessageBox&)>> answers = {
        No,
        [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); },
        [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); },
        [](QMessageBox& box) { box.close(); },
    };
    int asked = 0;
    for (const auto& answer : answers) {
        window_->Panels().SetInfo(QStringLiteral("before"));
        Run(answer);
        EXPECT_EQ(questions_, ++asked);
        EXPECT_EQ(Info(), "");
        EXPECT_FALSE(IsWritten());
    }
}

TEST_F(MainPickupTest, TheProgramsFolderIsNotSetUpYet) {
    OpenIn("/prog/");
    Run(No);
    EXPECT_TRUE(SaysNotSetUp());
    EXPECT_EQ(questions_, 1);
    EXPECT_EQ(caption_, QStringLiteral("/prog/"));
    EXPECT_EQ(opened_, QStringList({QStringLiteral("Select Pickup Directory"), QStringLiteral("/prog/")}));
    EXPECT_EQ(Info(), "");
}

TEST_F(MainPickupTest, ADirectorySelectedMeanwhileIsTheOneThatIsTested) {
    select_ = NativePath(QStringLiteral("/pickup"));
    OpenIn("/prog/");
    Run(Yes);
    EXPECT_EQ(opened_, QStringList({QStringLiteral("Select Pickup Directory"), QStringLiteral("/pickup/")}));
    EXPECT_EQ(SlashPath(Stored("PickupDir")), QStringLiteral("/pickup/"));
    EXPECT_TRUE(IsWritten());
    EXPECT_EQ(Info(), sent_);
}

TEST_F(MainPickupTest, AnUnknownUserNameIsWrittenAsItStands) {
    shell_.SetUserName({});
    OpenIn("/pickup/");
    EXPECT_EQ(window_->State().UserName, QString());
    Run(Yes);
    EXPECT_NE(Written().find("Subject:  is testing the Exchange pickup folder\r\n"), std::string::npos) << Written();
    EXPECT_TRUE(QString::fromStdString(Written()).endsWith(QStringLiteral("\r\nKind regards, \r\n")));
    EXPECT_EQ(Info(), sent_);
}

TEST_F(MainPickupTest, TheTimerRestsWhileSomethingIsOpenAndRunsAfterwards) {
    const auto runs = [this] { return Find<QTimer>("tmrRefresh")->isActive(); };
    OpenIn("/prog/");
    Run([this, runs](QMessageBox& box) {
        window_->mnuAcRefresh_Click(); // one that was due
        rested_ = rested_ && !runs();
        No(box);
    });
    EXPECT_EQ(opened_.size(), 2);
    EXPECT_TRUE(rested_);
    EXPECT_TRUE(runs());
    Find<QTimer>("tmrRefresh")->stop();
    Run(No);
    EXPECT_TRUE(runs());
    Run([this](QMessageBox& box) {
        window_->close();
        box.reject();
    });
    EXPECT_FALSE(runs());
}

TEST_F(MainPickupTest, AFolderWithTheMarkOfWindowTitlesIsNamedInFull) {
    files_.AddFolder(QStringLiteral("/x[*]/"));
    OpenIn("/x[*]/");
    std::string title;
    Run([&title](QMessageBox& box) {
        title = SlashPath(box.windowHandle()->title()).toStdString();
        No(box);
    });
    EXPECT_EQ(title, "/x[*]/");
}

TEST_F(MainPickupTest, NorIsAFolderBelowIt) {
    files_.AddFolder(QStringLiteral("/prog/pickup/"));
    OpenIn("/prog/pickup/");
    Run(Yes);
    EXPECT_TRUE(SaysNotSetUp());
    EXPECT_EQ(caption_, QStringLiteral("/prog/pickup/"));
    EXPECT_EQ(opened_, QStringList({QStringLiteral("Select Pickup Directory"), QStringLiteral("/prog/pickup/")}));
    EXPECT_EQ(Info(), sent_) << "the test goes on after a cancelled selection";
    EXPECT_TRUE(files_.FileExists(QStringLiteral("/prog/pickup/quellbox.eml")));
}

TEST_F(MainPickupTest, APathThatDiffersInCaseIsSetUp) {
    OpenIn("/Prog/pickup/");
    Run(No);
    EXPECT_FALSE(SaysNotSetUp());
    EXPECT_EQ(questions_, 1);
    EXPECT_EQ(opened_, QStringList{QStringLiteral("/Prog/pickup/")});
}

TEST_F(MainPickupTest, TheSecondTestReplacesTheFile) {
    OpenIn("/pickup/");
    Run(Yes);
    const std::string first = Written();
    clock_.Set(clock_.Now().addSecs(61));
    Run(Yes);
    EXPECT_NE(Written(), first);
    files_.Remove(file_); // as the server does
    Run(Yes);
    EXPECT_TRUE(IsWritten());
    EXPECT_EQ(Info(), sent_);
    EXPECT_EQ(files_.Paths(), QStringList{file_});
}

TEST_F(MainPickupTest, AtMidnightTheDateStandsAlone) {
    OpenIn("/pickup/");
    clock_.Set(QDateTime(QDate(2026, 3, 11), QTime(0, 0)));
    Run(Yes);
    const std::string folder = NativePath(QStringLiteral("/pickup/")).toStdString();
    EXPECT_NE(Written().find("Testing pickup folder: " + folder + " at 11.03.26\r\n"), std::string::npos) << Written();
}

TEST_F(MainPickupTest, AMissingFolderIsReportedWithItsPath) {
    OpenIn("/none/");
    Run(Yes);
    ASSERT_EQ(errors_.size(), 1);
    EXPECT_TRUE(SlashPath(errors_[0]).contains(QStringLiteral("/none//quellbox.eml")));
    EXPECT_TRUE(errors_[0].contains(QStringLiteral("No such file or directory")));
    EXPECT_EQ(Info(), "");
}

TEST_F(MainPickupTest, AWriteThatFailsIsReportedWithItsReason) {
    OpenIn("/pickup/");
    files_.FailPath(file_, QStringLiteral("No space left on device"));
    Run(Yes);
    ASSERT_EQ(errors_.size(), 1);
    EXPECT_TRUE(errors_[0].contains(QStringLiteral("quellbox.eml")));
    EXPECT_TRUE(errors_[0].contains(QStringLiteral("No space left on device")));
    EXPECT_EQ(Info(), "");
    EXPECT_FALSE(infos_.contains(QString::fromStdString(sent_)));
    EXPECT_TRUE(files_.Paths().isEmpty());
}

TEST_F(MainPickupTest, AFolderOfMarkupIsPlainText) {
    files_.AddFolder(QStringLiteral("/<b>R&D</b>/"));
    OpenIn("/<b>R&D</b>/");
    Run(Yes);
    EXPECT_EQ(caption_, QStringLiteral("/<b>R&D</b>/"));
    EXPECT_TRUE(files_.FileExists(QStringLiteral("/<b>R&D</b>/quellbox.eml")));
}

TEST_F(MainPickupTest, WaitsForNoPass) {
    AddThree();
    files_.SetLatency(std::chrono::milliseconds(60));
    Open();
    bool tried = false;
    WhileBusy([this, &tried] {
        Action("mnuToolsTest")->trigger();
        tried = true;
    });
    ASSERT_TRUE(WaitForRefreshes(1));
    files_.SetLatency(std::chrono::microseconds(0));
    EXPECT_TRUE(tried);
    EXPECT_EQ(questions_, 0);
    EXPECT_FALSE(IsWritten());
}

} // namespace quellbox
