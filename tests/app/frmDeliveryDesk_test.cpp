#include "app/StatusBarView.h"
#include "delivery/SendingFolder.h"
#include "tests/support/DialogVisit.h"
#include "tests/support/FakeSmtpServer.h"
#include "tests/support/RealFolderWindow.h"

#include <QDir>
#include <QMessageBox>

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

    void OpenWith(int count) {
        for (int number = 1; number <= count; ++number) {
            Write(Archive(Name(number)), "X-Envelope-From: <joe@example.org>\r\nX-Envelope-To: <ann@example.net>\r\n" + own);
        }
        Open();
        ASSERT_EQ(window->Messages().Count(), count);
    }

    void UnblockAll() {
        List()->selectAll();
        Command("mnuActionsUnblock")->trigger();
        Settle();
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
    ASSERT_EQ(window->Failures().Count(), 3);
    const FailureText text = window->Failures().Texts(QLocale::c()).front();
    EXPECT_TRUE(text.reason.contains(QStringLiteral("nobody of that name"))) << text.reason.toStdString();
    window->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(window->Messages().Count(), 3);
}

TEST_F(DeliveryDeskTest, WhatMayHaveArrivedIsMarkedAndNotSentAgainByItself) {
    Serve(Answering(SmtpStep::End, {.hangsUp = true, .takes = true}));
    Set("TolerationLevel", QStringLiteral("2"));
    store.SetValue(QStringLiteral("Whitelist"), QStringLiteral("1"), QStringLiteral("joe@example.org"));
    OpenWith(0);
    Write(Archive(Name(1)), "X-Envelope-From: <joe@example.org>\r\nX-Envelope-To: <ann@example.net>\r\n" + own);
    Set("TolerationLevel", QStringLiteral("1"));
    window->mnuAcRefresh_Click();
    Settle();
    UnblockAll();
    EXPECT_EQ(server->Taken().size(), 1U);
    EXPECT_EQ(Files(), QStringList{UncertainName(Name(1))});
    window->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(Files(), QStringList{UncertainName(Name(1))});
    EXPECT_EQ(server->Taken().size(), 1U) << "it was sent again by itself";
}

TEST_F(DeliveryDeskTest, AServerThatIsNotThereCostsAFewAttempts) {
    Serve({});
    server.reset();
    OpenWith(40);
    UnblockAll();
    EXPECT_EQ(Files().size(), 40);
    EXPECT_EQ(window->Failures().Count(), 40);
}

TEST_F(DeliveryDeskTest, WithoutThePasswordNothingIsSent) {
    Serve({});
    Set("SmtpUser", QStringLiteral("joe"));
    OpenWith(2);
    UnblockAll();
    EXPECT_EQ(Files().size(), 2);
    EXPECT_EQ(server->Connections(), 0);
    ASSERT_EQ(window->Failures().Count(), 2);
    EXPECT_TRUE(window->Failures().Texts(QLocale::c()).front().reason.startsWith(QStringLiteral("No password")));
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

TEST_F(DeliveryDeskTest, ThePickupTestGoesTheSameWay) {
    Serve({});
    OpenWith(0);
    const DialogVisit visit([](QWidget* box) {
        auto* question = qobject_cast<QMessageBox*>(box);
        ASSERT_NE(question, nullptr);
        EXPECT_TRUE(question->text().contains(QStringLiteral("smtp://127.0.0.1:"))) << question->text().toStdString();
        question->button(QMessageBox::Ok)->click();
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
    EXPECT_TRUE(QTest::qWaitFor([this] { return window->Failures().Count() == 1; }));
    EXPECT_TRUE(server->Taken().empty());
}
