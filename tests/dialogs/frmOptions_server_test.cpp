#include "tests/dialogs/OptionsTest.h"

#include <QComboBox>

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
        Click(Find<QPushButton>("btnDetect"));
        EXPECT_TRUE(QTest::qWaitFor([this] { return Find<QPushButton>("btnDetect")->isEnabled(); }));
        return Find<QLabel>("lblDetected")->text().toStdString();
    }
};

} // namespace

TEST_F(ServerOptions, TheFirstIsTheOneUnlessTheUserChoosesAnother) {
    Open(6);
    EXPECT_EQ(Server()->currentText(), QStringLiteral("Intelligent Message Filter"));
    EXPECT_EQ(Server()->count(), static_cast<int>(ServerProfiles().size()));
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
    EXPECT_EQ(Detect(), "1 of the newest messages (2) have header fields of this server.");
    EXPECT_EQ(Chosen(), QStringLiteral("spamassassin"));
    EXPECT_EQ(state.ServerProfile, QString());
    Ok();
    EXPECT_EQ(state.ServerProfile, QStringLiteral("spamassassin"));
}

TEST_F(ServerOptions, DetectChangesNothingWhereItFindsNothing) {
    state.ServerProfile = QStringLiteral("amavis");
    files.Add(QStringLiteral("/archive/1.eml"), "Subject: none\r\n\r\nx");
    Open(6);
    EXPECT_EQ(Detect(), "None of the newest messages (1) says which server has blocked it.");
    EXPECT_EQ(Chosen(), QStringLiteral("amavis"));
    state.ArchiveDir = QStringLiteral("/elsewhere/");
    EXPECT_EQ(Detect().rfind("The archive cannot be read: ", 0), 0U);
    EXPECT_EQ(Chosen(), QStringLiteral("amavis"));
}

TEST_F(ServerOptions, ClosingDropsWhatIsBeingLookedFor) {
    files.Add(QStringLiteral("/archive/1.eml"), "X-SCL: 7 80%\r\n\r\nx");
    Open(6);
    Find<QPushButton>("btnDetect")->click();
    dialog.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(state.ServerProfile, QString());
}
