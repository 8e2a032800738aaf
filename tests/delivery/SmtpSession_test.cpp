#include "delivery/SmtpSession.h"

#include "tests/delivery/SmtpTestKit.h"

#include <QTcpServer>

namespace quellbox {

namespace {

using namespace std::chrono_literals;
using Traits = FakeSmtpServer::Traits;
using Script = std::function<std::optional<SmtpAnswer>(const SmtpScene&)>;

Traits Offering(const QByteArrayList& extensions) {
    Traits traits;
    traits.extensions = extensions;
    return traits;
}

Traits Following(const Script& script) {
    Traits traits;
    traits.script = script;
    return traits;
}

TEST(SmtpSessionTest, MessageArrivesAsItIs) {
    const FakeSmtpServer server({});
    SmtpSession session(server.Address());
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
    EXPECT_EQ(outcome.fate, DeliveryFate::Delivered);
    EXPECT_EQ(outcome.words, QStringLiteral("250 2.0.0 Ok: queued as 1-1"));
    session.Close();
    ASSERT_EQ(server.Taken().size(), 1U);
    EXPECT_EQ(server.Taken()[0].mail, "MAIL FROM:<joe@example.com> SIZE=" + QByteArray::number(smallMessage.size()));
    EXPECT_EQ(server.Taken()[0].recipients, QByteArrayList{"ann@example.com"});
    EXPECT_EQ(server.Taken()[0].wire, smallMessage);
    const QByteArray bytes = server.Bytes();
    EXPECT_EQ(bytes.mid(bytes.indexOf('\n') + 1), "MAIL FROM:<joe@example.com> SIZE=44\r\nRCPT TO:<ann@example.com>\r\n"
                                                  "DATA\r\n" +
                                                      smallMessage + ".\r\nQUIT\r\n");
    EXPECT_TRUE(bytes.startsWith("EHLO "));
    EXPECT_GT(bytes.indexOf("\r\n"), 5);
}

TEST(SmtpSessionTest, DotsAreDoubledAndLineEndsMadeCrLf) {
    const FakeSmtpServer server({});
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(oneRecipient, "a\n.\n.b\rc").fate, DeliveryFate::Delivered);
    ASSERT_EQ(server.Taken().size(), 1U);
    EXPECT_EQ(server.Taken()[0].wire, "a\r\n..\r\n..b\r\nc\r\n");
    EXPECT_TRUE(server.Taken()[0].mail.endsWith(" SIZE=13"));
}

TEST(SmtpSessionTest, BounceHasAnEmptySender) {
    const FakeSmtpServer server({});
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver({"", {"ann@example.com"}}, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_TRUE(server.Taken().at(0).mail.startsWith("MAIL FROM:<>"));
}

TEST(SmtpSessionTest, EverythingGoesTogetherForOneRecipient) {
    Traits traits;
    traits.lookAhead = 50ms;
    const FakeSmtpServer server(traits);
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.MostCommandsTogether(), 3);
    EXPECT_FALSE(server.HasEarlyText());
}

TEST(SmtpSessionTest, ForSeveralRecipientsDataWaits) {
    Traits traits;
    traits.lookAhead = 50ms;
    const FakeSmtpServer server(traits);
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(threeRecipients, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.MostCommandsTogether(), 4);
    EXPECT_EQ(server.Taken().at(0).recipients, threeRecipients.recipients);
}

TEST(SmtpSessionTest, WithoutPipeliningEachCommandWaits) {
    Traits traits = Offering({"SIZE", "8BITMIME"});
    traits.lookAhead = 20ms;
    const FakeSmtpServer server(traits);
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(threeRecipients, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.MostCommandsTogether(), 1);
    EXPECT_EQ(server.Taken().size(), 2U);
}

TEST(SmtpSessionTest, ServerWithoutExtensionsGetsNoParameters) {
    const FakeSmtpServer server(Following([](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        const bool isExtended = scene.step == SmtpStep::Hello && scene.line.startsWith("EHLO");
        return isExtended ? std::optional(SmtpAnswer{"502 what is that?\r\n"}) : std::nullopt;
    }));
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.Taken().at(0).mail, "MAIL FROM:<joe@example.com>");
}

TEST(SmtpSessionTest, ThousandRecipientsGoTogether) {
    const FakeSmtpServer server({});
    Envelope envelope{"joe@example.com", {}};
    for (int number = 0; number < 1000; ++number) {
        envelope.recipients += QByteArray::number(number) + "." + QByteArray(200, 'x') + "@example.com";
    }
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(envelope, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.Taken().at(0).recipients, envelope.recipients);
}

TEST(SmtpSessionTest, MessageGoesToAllOrToNone) {
    for (const QByteArrayList& extensions : {QByteArrayList{"PIPELINING"}, QByteArrayList{}}) {
        Traits traits = Offering(extensions);
        traits.script = [](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
            return scene.line.contains("ben@") ? std::optional(SmtpAnswer{"550-5.1.1 Who\r\n550 5.1.1 is that?\r\n"})
                                               : std::nullopt;
        };
        const FakeSmtpServer server(traits);
        SmtpSession session(server.Address());
        const DeliveryOutcome outcome = session.Deliver(threeRecipients, smallMessage);
        EXPECT_EQ(outcome.fate, DeliveryFate::Refused);
        EXPECT_EQ(outcome.words, QStringLiteral("ben@example.com: 550 5.1.1 Who 5.1.1 is that?"));
        EXPECT_FALSE(server.Bytes().contains("DATA"));
        EXPECT_TRUE(server.Bytes().contains("RSET"));
        EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
        EXPECT_EQ(server.Connections(), 1);
        EXPECT_EQ(server.Taken().size(), 1U);
    }
}

TEST(SmtpSessionTest, RefusedRecipientGetsNothingThoughTheServerWaitsForText) {
    const FakeSmtpServer server(Following([](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        if (scene.step == SmtpStep::Recipient && scene.count == 1) {
            return SmtpAnswer{"550 no such user\r\n"};
        }
        return scene.step == SmtpStep::Data && scene.count == 1 ? std::optional(SmtpAnswer{"354 go on\r\n"})
                                                                : std::nullopt;
    }));
    SmtpSession session(server.Address());
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
    EXPECT_EQ(outcome.fate, DeliveryFate::Refused);
    EXPECT_EQ(outcome.words, QStringLiteral("ann@example.com: 550 no such user"));
    EXPECT_TRUE(server.Bytes().endsWith("DATA\r\n.\r\n"));
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.Connections(), 1);
    ASSERT_EQ(server.Taken().size(), 1U);
    EXPECT_EQ(server.Taken()[0].wire, smallMessage);
}

TEST(SmtpSessionTest, ServerThatDoesNotForgetARefusedMessageIsLeft) {
    const FakeSmtpServer server(Following([](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        if (scene.step == SmtpStep::Recipient && scene.count == 1) {
            return SmtpAnswer{"550 no such user\r\n"};
        }
        return scene.step == SmtpStep::Reset ? std::optional(SmtpAnswer{"500 never\r\n"}) : std::nullopt;
    }));
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(threeRecipients, smallMessage).fate, DeliveryFate::Refused);
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.Connections(), 2);
}

TEST(SmtpSessionTest, EightBitMessageIsAnnounced) {
    const QByteArray message = "Subject: \xC3\xA9\r\n\r\n\xFF\r\n";
    const FakeSmtpServer server({});
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(oneRecipient, message).fate, DeliveryFate::Delivered);
    EXPECT_TRUE(server.Taken().at(0).mail.endsWith(" BODY=8BITMIME"));
    EXPECT_EQ(server.Taken().at(0).wire, message);
}

TEST(SmtpSessionTest, EightBitMessageIsNotConverted) {
    const FakeSmtpServer server(Offering({"PIPELINING"}));
    SmtpSession session(server.Address());
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, "\xE9\r\n");
    EXPECT_EQ(outcome.fate, DeliveryFate::Failed);
    EXPECT_FALSE(outcome.words.isEmpty());
    EXPECT_FALSE(server.Bytes().contains("MAIL"));
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.Connections(), 1);
}

TEST(SmtpSessionTest, AddressOutsideAsciiIsAnnounced) {
    const FakeSmtpServer server({});
    SmtpSession session(server.Address());
    const QByteArray address = "j\xC3\xB6rg@b\xC3\xBC"
                               "cher.example";
    EXPECT_EQ(session.Deliver({"joe@example.com", {address}}, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_TRUE(server.Taken().at(0).mail.endsWith(" SMTPUTF8"));
    EXPECT_EQ(server.Taken().at(0).recipients, QByteArrayList{address});
    EXPECT_EQ(session.Deliver({address, {"ann@example.com"}}, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_TRUE(server.Taken().at(1).mail.endsWith(" SMTPUTF8"));
}

TEST(SmtpSessionTest, AddressOutsideAsciiNeedsAServerThatTakesIt) {
    const FakeSmtpServer server(Offering({"8BITMIME", "PIPELINING"}));
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver({"joe@example.com", {"\xC3\xA4@example.com"}}, smallMessage).fate, DeliveryFate::Failed);
    EXPECT_FALSE(server.Bytes().contains("MAIL"));
}

TEST(SmtpSessionTest, UnsafeAddressesMakeNoConnection) {
    const FakeSmtpServer server({});
    SmtpSession session(server.Address());
    for (const char* address : {"ann@example.com>\r\nRCPT TO:<eve@spam.example", "a b", "<a>", ""}) {
        EXPECT_EQ(session.Deliver({"joe@example.com", {address}}, smallMessage).fate, DeliveryFate::Failed);
        EXPECT_EQ(session.Deliver({"joe@example.com", {"ann@example.com", address}}, smallMessage).fate,
                  DeliveryFate::Failed);
    }
    EXPECT_EQ(session.Deliver({"a\r\nb", {"ann@example.com"}}, smallMessage).fate, DeliveryFate::Failed);
    EXPECT_EQ(session.Deliver({"joe@example.com", {}}, smallMessage).fate, DeliveryFate::Failed);
    EXPECT_EQ(server.Connections(), 0);
}

TEST(SmtpSessionTest, MessageOverTheLimitIsNotSent) {
    const FakeSmtpServer server(Offering({"PIPELINING", "SIZE 1000"}));
    SmtpSession session(server.Address());
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, QByteArray(999, 'x') + "\r\n");
    EXPECT_EQ(outcome.fate, DeliveryFate::Refused);
    for (const int bytes : {1001, 1000}) {
        EXPECT_TRUE(outcome.words.contains(QLocale().formattedDataSize(bytes))) << qPrintable(outcome.words);
    }
    EXPECT_FALSE(server.Bytes().contains("MAIL"));
    EXPECT_EQ(session.Deliver(oneRecipient, QByteArray(998, 'x') + "\r\n").fate, DeliveryFate::Delivered);
    EXPECT_EQ(session.Deliver(oneRecipient, ".\r\n" + QByteArray(995, 'x') + "\r\n").fate, DeliveryFate::Delivered)
        << "the added dot does not count";
}

TEST(SmtpSessionTest, LargeMessageArrivesWhole) {
    const FakeSmtpServer server({});
    SmtpSession session(server.Address());
    const QByteArray message = LargeMessage(25 * 1024 * 1024);
    EXPECT_EQ(session.Deliver(oneRecipient, message).fate, DeliveryFate::Delivered);
    EXPECT_TRUE(server.Taken().at(0).wire == message);
}

TEST(SmtpSessionTest, ConnectionServesManyMessages) {
    const FakeSmtpServer server({});
    SmtpSession session(server.Address());
    for (int number = 0; number < 20; ++number) {
        EXPECT_EQ(session.Deliver(oneRecipient, QByteArray::number(number) + "\r\n").fate, DeliveryFate::Delivered);
    }
    EXPECT_EQ(server.Connections(), 1);
    ASSERT_EQ(server.Taken().size(), 20U);
    EXPECT_EQ(server.Taken()[19].wire, "19\r\n");
}

TEST(SmtpSessionTest, SessionConnectsAgainAfterItWasClosed) {
    const FakeSmtpServer server({});
    SmtpSession session(server.Address());
    session.Close();
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    session.Close();
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.Connections(), 2);
}

TEST(SmtpSessionTest, RefusedMessageDoesNotCostTheConnection) {
    const FakeSmtpServer server(Following([](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        return scene.step == SmtpStep::End && scene.count == 1 ? std::optional(SmtpAnswer{"554 spam\r\n"})
                                                               : std::nullopt;
    }));
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).words, QStringLiteral("554 spam"));
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.Connections(), 1);
}

TEST(SmtpSessionTest, IdleConnectionThatHasEndedIsMadeAnew) {
    const std::vector<SmtpAnswer> ends = {
        {"250 ok\r\n", true}, {"250 ok\r\n421 too long idle\r\n", true}, {"250 ok\r\n421 bye\r\n"}};
    for (const SmtpAnswer& end : ends) {
        const FakeSmtpServer server(Following([&end](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
            return scene.step == SmtpStep::End && scene.count == 1 ? std::optional(end) : std::nullopt;
        }));
        SmtpSession session(server.Address());
        EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
        EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
        EXPECT_EQ(server.Connections(), 2);
        EXPECT_EQ(server.Taken().size(), 2U);
    }
}

TEST(SmtpSessionTest, KeptConnectionThatEndsBeforeItAnswersIsMadeAnew) {
    for (const QByteArrayList& extensions : {QByteArrayList{"PIPELINING"}, QByteArrayList{}}) {
        for (const char* last : {"", "421 too many messages\r\n", "42"}) {
            Traits traits = Offering(extensions);
            traits.script = [last](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
                return scene.step == SmtpStep::Mail && scene.count == 2 ? std::optional(SmtpAnswer{last, true})
                                                                        : std::nullopt;
            };
            const FakeSmtpServer server(traits);
            SmtpSession session(server.Address());
            EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
            EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered) << last;
            EXPECT_EQ(server.Connections(), 2);
            EXPECT_EQ(server.Taken().size(), 2U);
        }
    }
}

TEST(SmtpSessionTest, OnlyKeptConnectionsAreMadeAnewAndOnlyOnce) {
    const FakeSmtpServer server(Following([](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        return scene.step == SmtpStep::Mail && scene.count != 1 ? std::optional(SmtpAnswer{"", true}) : std::nullopt;
    }));
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Failed);
    EXPECT_EQ(server.Connections(), 2);
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Failed);
    EXPECT_EQ(server.Connections(), 3);
}

TEST(SmtpSessionTest, ConnectionThatEndsLaterIsNotMadeAnew) {
    const FakeSmtpServer server(Following([](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        return scene.step == SmtpStep::Recipient && scene.count == 2 ? std::optional(SmtpAnswer{"", true})
                                                                     : std::nullopt;
    }));
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Failed);
    EXPECT_EQ(server.Connections(), 1);
}

TEST(SmtpSessionTest, StopIsObeyedAtEveryStep) {
    for (const SmtpStep step :
         {SmtpStep::Greeting, SmtpStep::Hello, SmtpStep::Mail, SmtpStep::Recipient, SmtpStep::Data, SmtpStep::Text}) {
        std::atomic<bool> isReached = false;
        const FakeSmtpServer server(Following([&isReached, step](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
            if (scene.step != step) {
                return std::nullopt;
            }
            isReached = true;
            return SmtpAnswer{"", false, true};
        }));
        SmtpSession session(server.Address(), [&isReached] { return !isReached; });
        const DeliveryOutcome outcome = session.Deliver(oneRecipient, LargeMessage(30'000'000));
        EXPECT_EQ(outcome.fate, DeliveryFate::Failed) << static_cast<int>(step);
        EXPECT_FALSE(outcome.words.isEmpty());
        EXPECT_TRUE(server.Taken().empty());
    }
}

TEST(SmtpSessionTest, StopAtTheEndLeavesTheMessageUncertain) {
    std::atomic<bool> isReached = false;
    const FakeSmtpServer server(Following([&isReached](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        isReached = scene.step == SmtpStep::End;
        return isReached ? std::optional(SmtpAnswer{"", false, true, true}) : std::nullopt;
    }));
    SmtpSession session(server.Address(), [&isReached] { return !isReached; });
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Uncertain);
    EXPECT_EQ(server.Taken().size(), 1U);
}

TEST(SmtpSessionTest, AnswerSoonAfterAStopStillCounts) {
    std::atomic<bool> isReached = false;
    const FakeSmtpServer server(Following([&isReached](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        if (scene.step != SmtpStep::End) {
            return std::nullopt;
        }
        isReached = true;
        return SmtpAnswer{"250 at last\r\n", false, false, false, 400ms};
    }));
    SmtpSession session(server.Address(), [&isReached] { return !isReached; });
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Failed);
    EXPECT_EQ(server.Taken().size(), 1U);
}

TEST(SmtpSessionTest, SlowServerIsWaitedFor) {
    const FakeSmtpServer server(Following([](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        return scene.step == SmtpStep::End ? std::optional(SmtpAnswer{"250 ok\r\n", false, false, false, 1200ms})
                                           : std::nullopt;
    }));
    SmtpServer address = server.Address();
    address.timeLimit = 1s; // The answer at the end may take twice as long.
    SmtpSession session(address);
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
}

TEST(SmtpSessionTest, WhereNobodyListensNothingIsDelivered) {
    SmtpServer address;
    {
        QTcpServer server;
        ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
        address.port = server.serverPort();
    }
    address.host = QStringLiteral("127.0.0.1");
    SmtpSession session(address);
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
    EXPECT_EQ(outcome.fate, DeliveryFate::Failed);
    EXPECT_TRUE(outcome.words.contains(QStringLiteral("127.0.0.1:%1").arg(address.port))) << qPrintable(outcome.words);
}

TEST(SmtpSessionTest, HostsThatAreNoneFail) {
    for (const char* host :
         {"", " ", "a b", "a/b", "user@127.0.0.1", "127.0.0.1/x", "a\r\nb", "no-such-host.invalid"}) {
        SmtpServer address;
        address.host = QString::fromUtf8(host);
        SmtpSession session(address);
        const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
        EXPECT_EQ(outcome.fate, DeliveryFate::Failed) << host;
        EXPECT_FALSE(outcome.words.isEmpty()) << host;
    }
    SmtpServer address;
    address.host = QStringLiteral("127.0.0.1");
    address.port = 0;
    EXPECT_EQ(SmtpSession(address).Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Failed);
}

TEST(SmtpSessionTest, ProxyOfTheEnvironmentIsNotUsed) {
    qputenv("all_proxy", "http://127.0.0.1:1");
    const FakeSmtpServer server({});
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    qunsetenv("all_proxy");
}

TEST(SmtpSessionTest, SessionsOfManyThreadsDoNotDisturbEachOther) {
    const FakeSmtpServer server({});
    std::vector<std::thread> threads;
    std::atomic<int> delivered = 0;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&server, &delivered] {
            SmtpSession session(server.Address());
            for (int number = 0; number < 20; ++number) {
                delivered += session.Deliver(oneRecipient, smallMessage).fate == DeliveryFate::Delivered ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(delivered, 160);
    EXPECT_EQ(server.Taken().size(), 160U);
    EXPECT_EQ(server.Connections(), 8);
}

} // namespace

} // namespace quellbox
