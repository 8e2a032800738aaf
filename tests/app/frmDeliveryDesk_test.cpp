#include "delivery/SendingFolder.h"
#include "history/frmHistory.h"
#include "tests/support/DialogVisit.h"
#include "tests/support/FakeSmtpServer.h"
#include "tests/support/RealFolderWindow.h"

#include <QDir>
#include <QMessageBox>
#include <QToolButton>

using namespace quellbox;

namespace {

const QByteArray own = "Received: from x\r\nFrom: Someone <f@x.org>\r\nTo: b@x.org\r\nSubject: s\r\n\r\nbody\r\n";

/// The window over messages that amavis has blocked, beside a mail server.
class DeliveryDeskTest : public RealFolderWindowTest {
protected:
    void Serve(FakeSmtpServer::Traits traits) {
        server = std::make_unique<FakeSmtpServer>(std::move(traits));
        Set("ServerProfile", QStringLiteral("amavis"));
        Set("Delivery", QStringLiteral("smtp"));
        Set("SmtpHost", server->Address().host);
        Set("SmtpPort", QString::number(server->Address().port));
        Set("SmtpSecurity", QStringLiteral("none"));
    }

    void Set(const char* key, const QString& value) {
        store.SetValue(QStringLiteral("Settings"), QLatin1String(key), value);
    }

    static QByteArray Blocked() {
        return "X-Envelope-From: <joe@example.org>\r\nX-Envelope-To: <ann@example.net>\r\n" + own;
    }

    void OpenWith(int count) {
        for (int number = 1; number <= count; ++number) {
            Write(Archive(Name(number)), Blocked());
        }
        Open();
        ASSERT_EQ(window->Messages().Count(), count);
    }

    void UnblockAll() {
        Click(0);
        Command("mnuEditSelectAll")->trigger();
        Command("mnuActionsUnblock")->trigger();
        Settle();
    }

    /// The reasons in the list that the mark in the status bar opens.
    QStringList Reasons() {
        QStringList reasons;
        const DialogVisit visit("frmFailures", [&reasons](QDialog& dialog) {
            const auto* list = dialog.findChild<QTreeWidget*>(QStringLiteral("lvwFailures"));
            for (int item = 0; item < list->topLevelItemCount(); ++item) {
                reasons.append(list->topLevelItem(item)->text(1));
            }
        });
        Find<QToolButton>("btnFailures")->click();
        return reasons;
    }

    QStringList Files() const { return QDir(Archive()).entryList(QDir::Files, QDir::Name); }
    QStringList Waiting() const { return QDir(SendingFolderOf(Archive()).Text()).entryList(QDir::Files); }

    static FakeSmtpServer::Traits Answering(SmtpStep step, const SmtpAnswer& answer) {
        FakeSmtpServer::Traits traits;
        traits.script = [step, answer](const SmtpScene& scene) {
            return scene.step == step ? std::optional(answer) : std::nullopt;
        };
        return traits;
    }

    std::unique_ptr<FakeSmtpServer> server;
};

} // namespace

TEST_F(DeliveryDeskTest, UnblockedMessagesGoToTheMailServer) {
    Serve({});
    OpenWith(20);
    UnblockAll();
    EXPECT_TRUE(Files().isEmpty());
    EXPECT_TRUE(Waiting().isEmpty());
    EXPECT_EQ(window->Messages().Count(), 0);
    EXPECT_TRUE(QDir(Pickup()).isEmpty());
    const std::vector<TakenMessage> taken = server->Taken();
    ASSERT_EQ(taken.size(), 20U);
    for (const TakenMessage& message : taken) {
        EXPECT_TRUE(message.mail.startsWith("MAIL FROM:<joe@example.org>")) << message.mail.toStdString();
        EXPECT_EQ(message.recipients, QByteArrayList{"ann@example.net"});
        EXPECT_EQ(message.wire.toStdString(), own.toStdString());
    }
}

TEST_F(DeliveryDeskTest, WhatIsRefusedStaysAndTheServersWordsAreShown) {
    Serve(Answering(SmtpStep::Recipient, {"550 5.1.1 nobody of that name\r\n"}));
    OpenWith(3);
    UnblockAll();
    EXPECT_EQ(Files().size(), 3);
    EXPECT_TRUE(Waiting().isEmpty());
    EXPECT_TRUE(server->Taken().empty());
    const QStringList reasons = Reasons();
    ASSERT_EQ(reasons.size(), 3);
    EXPECT_TRUE(reasons[0].contains(QStringLiteral("nobody of that name"))) << reasons[0].toStdString();
    window->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(window->Messages().Count(), 3);
}

TEST_F(DeliveryDeskTest, WhatMayHaveArrivedIsMarkedAndNotSentAgainByItself) {
    Serve(Answering(SmtpStep::End, {.hangsUp = true, .takes = true}));
    Set("TolerationLevel", QStringLiteral("2"));
    store.SetValue(QStringLiteral("Tolerate"), QStringLiteral("joe@example.org"), QStringLiteral("0"));
    Write(Archive(Name(1)), Blocked());
    Open();
    EXPECT_EQ(Files(), QStringList{UncertainName(Name(1))});
    EXPECT_EQ(server->Taken().size(), 1U);
    window->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(window->Messages().Count(), 1);
    EXPECT_EQ(server->Taken().size(), 1U) << "it was sent again by itself";
    UnblockAll();
    EXPECT_EQ(server->Taken().size(), 2U) << "the user may";
}

TEST_F(DeliveryDeskTest, ToleratedMessagesGoTheSameWay) {
    Serve({});
    Set("TolerationLevel", QStringLiteral("2"));
    store.SetValue(QStringLiteral("Tolerate"), QStringLiteral("joe@example.org"), QStringLiteral("0"));
    for (int number = 1; number <= 30; ++number) {
        Write(Archive(Name(number)), Blocked());
    }
    Open();
    EXPECT_TRUE(Files().isEmpty());
    EXPECT_EQ(server->Taken().size(), 30U);
    EXPECT_EQ(window->Messages().Count(), 0);
    EXPECT_TRUE(QDir(Pickup()).isEmpty());
}

TEST_F(DeliveryDeskTest, AServerThatIsNotThereCostsAFewAttempts) {
    Serve({});
    server.reset();
    OpenWith(40);
    UnblockAll();
    EXPECT_EQ(Files().size(), 40);
    EXPECT_EQ(Reasons().size(), 40);
}

TEST_F(DeliveryDeskTest, WithoutThePasswordNothingIsSent) {
    Serve({});
    Set("SmtpUser", QStringLiteral("joe"));
    OpenWith(2);
    UnblockAll();
    EXPECT_EQ(Files().size(), 2);
    EXPECT_EQ(server->Connections(), 0);
    const QStringList reasons = Reasons();
    ASSERT_EQ(reasons.size(), 2);
    EXPECT_TRUE(reasons[0].startsWith(QStringLiteral("No password"))) << reasons[0].toStdString();
}

TEST_F(DeliveryDeskTest, AProgramGetsTheMessageWhereThatIsSet) {
#ifdef _WIN32
    GTEST_SKIP() << "it is a script of the shell";
#endif
    Serve({});
    const QString script = root.path() + QStringLiteral("/deliver");
    Write(script, "#!/bin/sh\ncat > \"$0.out\"\necho \"$@\" > \"$0.args\"\n");
    QFile::setPermissions(script, QFile::ReadOwner | QFile::ExeOwner);
    Set("Delivery", QStringLiteral("command"));
    Set("DeliveryCommand", script + QStringLiteral(" -f SENDER -- RECIPIENT..."));
    OpenWith(1);
    UnblockAll();
    EXPECT_TRUE(Files().isEmpty());
    EXPECT_EQ(Read(script + QStringLiteral(".out")).toStdString(), own.toStdString());
    EXPECT_EQ(Read(script + QStringLiteral(".args")), "-f joe@example.org -- ann@example.net\n");
    EXPECT_EQ(server->Connections(), 0);
}

TEST_F(DeliveryDeskTest, TheReplayDirectoryGetsTheMessageWithItsEnvelope) {
    Serve({});
    Set("Delivery", QStringLiteral("replay"));
    OpenWith(20);
    UnblockAll();
    EXPECT_TRUE(Files().isEmpty());
    EXPECT_TRUE(Waiting().isEmpty());
    const QStringList replayed = QDir(Pickup()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    ASSERT_EQ(replayed.size(), 20);
    EXPECT_EQ(replayed[0], QStringLiteral("m0001.eml"));
    for (const QString& name : replayed) {
        EXPECT_EQ(Read(Pickup(name)).toStdString(),
                  "X-Sender: <joe@example.org>\r\nX-Receiver: <ann@example.net>\r\n" + own.toStdString());
    }
    Command("mnuEditUndo")->trigger();
    Settle();
    EXPECT_TRUE(Files().isEmpty()) << "the mail server has them";
    EXPECT_EQ(server->Connections(), 0);
}

TEST_F(DeliveryDeskTest, WithoutTheReplayDirectoryTheMessagesStay) {
    Serve({});
    Set("Delivery", QStringLiteral("replay"));
    QDir().rmdir(Pickup());
    OpenWith(3);
    UnblockAll();
    EXPECT_EQ(Files(), (QStringList{Name(1), Name(2), Name(3)}));
    EXPECT_TRUE(Waiting().isEmpty());
    const QStringList reasons = Reasons();
    ASSERT_EQ(reasons.size(), 3);
    EXPECT_TRUE(reasons[0].startsWith(Pickup())) << reasons[0].toStdString();
}

TEST_F(DeliveryDeskTest, ThePickupTestIsWatchedInTheReplayDirectory) {
    Serve({});
    Set("Delivery", QStringLiteral("replay"));
    Open();
    QString question;
    const DialogVisit visit("msgConfirm", [&question](QDialog& dialog) {
        auto& box = dynamic_cast<QMessageBox&>(dialog);
        question = box.text();
        box.button(QMessageBox::Yes)->click();
    });
    Command("mnuToolsTest")->trigger();
    Settle();
    EXPECT_TRUE(question.contains(QStringLiteral("replay:") + Pickup())) << question.toStdString();
    const QByteArray message = Read(Pickup(QStringLiteral("quellbox.eml")));
    EXPECT_TRUE(message.startsWith("X-Sender: <>\r\nX-Receiver: <postmaster>\r\nDate: ")) << message.toStdString();
    EXPECT_EQ(window->Panels().Info().text, QStringLiteral("Testmessage send. Verify postmaster mailbox now!"));
    Command("mnuToolsHistory")->trigger();
    const HistoryModel& history = Find<frmHistory>("frmHistory")->Model();
    const auto isTold = [&history](const char* text) {
        for (int row = 0; row < history.rowCount(); ++row) {
            const HistoryLine* line = history.Line(row);
            if (line != nullptr && line->entry.detail.contains(QLatin1String(text))) {
                return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return isTold("Written into the replay directory as quellbox.eml."); }));
    EXPECT_FALSE(isTold("has taken the test message"));
    QFile::remove(Pickup(QStringLiteral("quellbox.eml")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return isTold("has taken the test message"); }));
}

TEST_F(DeliveryDeskTest, ThePickupTestGoesTheSameWay) {
    Serve({});
    OpenWith(0);
    const DialogVisit visit("msgConfirm", [](QDialog& dialog) {
        auto& question = dynamic_cast<QMessageBox&>(dialog);
        EXPECT_TRUE(question.text().contains(QStringLiteral("smtp://127.0.0.1:"))) << question.text().toStdString();
        question.button(QMessageBox::Yes)->click();
    });
    Command("mnuToolsTest")->trigger();
    Settle();
    const std::vector<TakenMessage> taken = server->Taken();
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(taken.front().recipients, QByteArrayList{"postmaster"});
    EXPECT_TRUE(QDir(Pickup()).isEmpty());
}

TEST_F(DeliveryDeskTest, WhatAProgramLeftOnItsWayComesBackMarked) {
    Serve({});
    QDir().mkpath(SendingFolderOf(Archive()).Text());
    Write(SendingFolderOf(Archive()).PathOf(QStringLiteral("20200101-120000-000-00af3c~old.EML")), own);
    Open();
    EXPECT_TRUE(QTest::qWaitFor([this] { return Files() == QStringList{QStringLiteral("old.uncertain.EML")}; }));
    EXPECT_TRUE(QTest::qWaitFor([this] { return Find<QToolButton>("btnFailures")->isVisible(); }));
    EXPECT_TRUE(server->Taken().empty());
}
