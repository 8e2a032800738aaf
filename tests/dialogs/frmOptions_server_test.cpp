#include "tests/dialogs/OptionsTest.h"
#include "tests/support/DialogVisit.h"
#include "tests/support/Gzip.h"

#include <QComboBox>
#include <QSemaphore>

using namespace quellbox;

namespace {

class ServerOptions : public Options {
protected:
    ServerOptions() {
        state.ArchiveDir = QStringLiteral("/archive/");
        files.AddFolder(state.ArchiveDir);
    }

    QComboBox* Server() const { return Find<QComboBox>("cboServer"); }
    QString Chosen() const { return Server()->currentData().toString(); }

    void Ok() const { Click(Find<QPushButton>("cmdOK")); }

    std::string Detect() const {
        auto* button = Find<QPushButton>("btnDetect");
        button->setFocus();
        QTest::keyClick(button, Qt::Key_Space);
        QTest::keyClick(button, Qt::Key_Space); // which does nothing more
        const auto text = [this] { return Find<QLabel>("lblDetected")->text(); };
        EXPECT_EQ(text(), QStringLiteral("Looking at the newest messages..."));
        EXPECT_TRUE(QTest::qWaitFor([&text] { return !text().startsWith(QLatin1String("Looking")); }));
        EXPECT_TRUE(button->hasFocus());
        EXPECT_EQ(button->accessibleDescription(), text());
        return text().toStdString();
    }
};

} // namespace

TEST_F(ServerOptions, TheFirstIsTheOneUnlessTheUserChoosesAnother) {
    Open(6);
    EXPECT_EQ(Server()->currentText(), QStringLiteral("Intelligent Message Filter"));
    EXPECT_EQ(Server()->count(), static_cast<int>(ServerProfiles().size()) + 1);
    Ok();
    EXPECT_EQ(state.ServerProfile, QString()) << "what was not chosen is not changed";
    EXPECT_EQ(filterTaken, QList<bool>({false}));
}

TEST_F(ServerOptions, AnotherOneNeedsARefresh) {
    Open(6);
    Server()->setFocus();
    QTest::keyClick(Server(), Qt::Key_Down);
    Ok();
    EXPECT_EQ(state.ServerProfile, QStringLiteral("exchange"));
    EXPECT_EQ(filterTaken, QList<bool>({true}));
    Open(6);
    EXPECT_EQ(Chosen(), QStringLiteral("exchange"));
    Ok();
    EXPECT_EQ(filterTaken, QList<bool>({true, false}));
}

TEST_F(ServerOptions, CancelKeepsTheServer) {
    state.ServerProfile = QStringLiteral("rspamd");
    Open(6);
    EXPECT_EQ(Chosen(), QStringLiteral("rspamd"));
    Server()->setCurrentIndex(0);
    Click(Find<QPushButton>("cmdCancel"));
    EXPECT_EQ(state.ServerProfile, QStringLiteral("rspamd"));
}

TEST_F(ServerOptions, DetectProposesAndOkTakesOver) {
    files.Add(QStringLiteral("/archive/1.eml"), "X-Spam-Status: Yes, score=9\r\n\r\nx");
    files.Add(QStringLiteral("/archive/2.eml"), "Subject: none\r\n\r\nx");
    Open(6);
    EXPECT_EQ(Detect(), "Found in 1 of the newest messages (2): SpamAssassin");
    EXPECT_EQ(Chosen(), QStringLiteral("spamassassin"));
    EXPECT_EQ(state.ServerProfile, QString());
    Ok();
    EXPECT_EQ(state.ServerProfile, QStringLiteral("spamassassin"));
}

TEST_F(ServerOptions, DetectFindsWhatIsPacked) {
    files.Add(QStringLiteral("/archive/spam-1.gz"), Gzip("X-Quarantine-ID: <1>\r\nSubject: s\r\n\r\nx"));
    Open(6);
    EXPECT_EQ(Detect(), "Found in 1 of the newest messages (1): amavis");
}

TEST_F(ServerOptions, DetectChangesNothingWhereItFindsNothing) {
    state.ServerProfile = QStringLiteral("amavis");
    Open(6);
    EXPECT_EQ(Detect(), "The archive holds no messages.");
    files.Add(QStringLiteral("/archive/1.eml"), "Subject: none\r\n\r\nx");
    EXPECT_EQ(Detect(), "The newest messages (1) do not say which server has blocked them.");
    EXPECT_EQ(Chosen(), QStringLiteral("amavis"));
    state.ArchiveDir = QStringLiteral("/elsewhere/");
    EXPECT_EQ(Detect().rfind("The archive cannot be read: ", 0), 0U);
    EXPECT_EQ(Chosen(), QStringLiteral("amavis"));
}

TEST_F(ServerOptions, AChoiceOfTheUserPutsAnEndToTheProposal) {
    files.Add(QStringLiteral("/archive/1.eml"), "X-SCL: 7 80%\r\n\r\nx");
    state.ServerProfile = QStringLiteral("amavis");
    Open(6);
    Find<QPushButton>("btnDetect")->click();
    Server()->setFocus();
    QTest::keyClick(Server(), Qt::Key_Down);
    pool.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(Chosen(), QStringLiteral("rspamd"));
    EXPECT_EQ(Find<QLabel>("lblDetected")->text(), QString());
}

TEST_F(ServerOptions, TheFieldsOfAnotherServerAreThereOnlyForThatOne) {
    Open(6);
    EXPECT_FALSE(Find<QPushButton>("btnOwnServer")->isEnabled());
    Server()->setFocus();
    QTest::keyClick(Server(), Qt::Key_End);
    EXPECT_EQ(Server()->currentText(), QStringLiteral("another server"));
    EXPECT_TRUE(Find<QPushButton>("btnOwnServer")->isEnabled());
    QTest::keyClick(Server(), Qt::Key_Home);
    EXPECT_FALSE(Find<QPushButton>("btnOwnServer")->isEnabled());
}

TEST_F(ServerOptions, TheFieldsOfAnotherServerAreTakenOverByOkOfBothDialogs) {
    state.ServerProfile = QStringLiteral("own");
    state.Own.rating = QStringLiteral("X-Junk");
    state.Own.ratingForm = QStringLiteral("number");
    const OwnServer before = state.Own;
    const auto describe = [this](const char* close) {
        const DialogVisit visit("frmOwnServer", [close](QDialog& fields) {
            EXPECT_TRUE(fields.findChild<QLineEdit*>(QStringLiteral("txtRating"))->text().startsWith(u"X-Junk"));
            QTest::keyClicks(fields.findChild<QLineEdit*>(QStringLiteral("txtRating")), QStringLiteral("2"));
            fields.findChild<QPushButton*>(QLatin1String(close))->click();
        });
        Find<QPushButton>("btnOwnServer")->click();
        EXPECT_TRUE(visit.Happened());
    };
    Open(6);
    EXPECT_EQ(Chosen(), QStringLiteral("own"));
    describe("btnCancel");
    Ok();
    EXPECT_TRUE(state.Own == before);
    EXPECT_EQ(filterTaken, QList<bool>({false}));
    Open(6);
    describe("btnOK");
    EXPECT_TRUE(state.Own == before);
    Click(Find<QPushButton>("cmdCancel"));
    EXPECT_TRUE(state.Own == before);
    Open(6);
    describe("btnOK");
    Ok();
    EXPECT_TRUE(state.Own.rating.endsWith(u'2')) << state.Own.rating.toStdString();
    EXPECT_EQ(filterTaken, QList<bool>({false, true})) << "another description makes the list anew";
}

TEST_F(ServerOptions, TheFieldsOfAServerThatIsNotChosenAreKeptAndMakeNothingAnew) {
    state.ServerProfile = QStringLiteral("amavis");
    Open(6);
    Server()->setCurrentIndex(Server()->count() - 1);
    const DialogVisit visit("frmOwnServer", [](QDialog& fields) {
        QTest::keyClicks(fields.findChild<QLineEdit*>(QStringLiteral("txtRating")), QStringLiteral("X-Junk"));
        fields.findChild<QPushButton*>(QStringLiteral("btnOK"))->click();
    });
    Find<QPushButton>("btnOwnServer")->click();
    Server()->setCurrentIndex(Server()->findData(QStringLiteral("amavis")));
    Ok();
    EXPECT_EQ(state.Own.rating, QStringLiteral("X-Junk"));
    EXPECT_EQ(state.ServerProfile, QStringLiteral("amavis"));
    EXPECT_EQ(filterTaken, QList<bool>({false}));
}

TEST_F(ServerOptions, ClosingDropsWhatIsBeingLookedFor) {
    QSemaphore reading;
    QSemaphore mayGoOn;
    files.Add(QStringLiteral("/archive/1.eml"), "X-SCL: 7 80%\r\n\r\nx");
    files.SetReadHook([&](const QString&) {
        reading.release();
        mayGoOn.acquire();
    });
    Open(6);
    Find<QPushButton>("btnDetect")->click();
    ASSERT_TRUE(QTest::qWaitFor([&reading] { return reading.available() > 0; }));
    dialog.reset();
    mayGoOn.release();
    pool.WaitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(state.ServerProfile, QString());
}
