#include "tests/delivery/SmtpTestKit.h"

namespace quellbox {

namespace {

using Traits = FakeSmtpServer::Traits;

/// Connections with TLS, and logging in.
class SmtpSecurityTest : public testing::TestWithParam<SmtpSecurity> {
protected:
    void SetUp() override {
        if (TestCertificates::Get() == nullptr) {
            GTEST_SKIP() << "the program openssl is missing";
        }
    }

    static Traits Protected(SmtpSecurity security) {
        Traits traits;
        traits.security = security;
        traits.certificate = *TestCertificates::Get()->right;
        traits.user = "Aladdin";
        traits.password = "open sesame \xC3\xA4";
        return traits;
    }

    /// Whether the name or the password can be read from bytes, as they are or encoded.
    static bool HasSecret(const QByteArray& bytes, const Traits& traits) {
        const QByteArray plain = '\0' + traits.user + '\0' + traits.password;
        for (const QByteArray& secret : {traits.user, traits.password, traits.user.toBase64(),
                                         traits.password.toBase64(), plain.toBase64(), QByteArray("AUTH")}) {
            if (bytes.contains(secret)) {
                return true;
            }
        }
        return false;
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, SmtpSecurityTest, testing::Values(SmtpSecurity::StartTls, SmtpSecurity::Tls));

TEST_P(SmtpSecurityTest, MessageGoesEncryptedAfterLoggingIn) {
    const Traits traits = Protected(GetParam());
    const FakeSmtpServer server(traits);
    SmtpSession session(server.Address());
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
    EXPECT_EQ(outcome.fate, DeliveryFate::Delivered) << qPrintable(outcome.words);
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.Connections(), 1);
    EXPECT_EQ(server.Taken().size(), 2U);
    EXPECT_TRUE(HasSecret(server.Bytes(), traits)) << "else the next line says nothing";
    EXPECT_FALSE(HasSecret(server.ClearBytes(), traits));
    EXPECT_FALSE(server.ClearBytes().contains("MAIL"));
}

TEST_P(SmtpSecurityTest, NobodyLogsInWithoutAUser) {
    const Traits traits = Protected(GetParam());
    const FakeSmtpServer server(traits);
    SmtpServer address = server.Address();
    address.user.clear();
    SmtpSession session(address);
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_FALSE(HasSecret(server.Bytes(), traits));
}

TEST_P(SmtpSecurityTest, LargeMessageArrivesWhole) {
    const FakeSmtpServer server(Protected(GetParam()));
    SmtpSession session(server.Address());
    const QByteArray message = LargeMessage(25 * 1024 * 1024);
    EXPECT_EQ(session.Deliver(oneRecipient, message).fate, DeliveryFate::Delivered);
    EXPECT_TRUE(server.Taken().at(0).wire == message);
}

TEST_P(SmtpSecurityTest, HostNameIsCompared) {
    const FakeSmtpServer server(Protected(GetParam()));
    SmtpServer address = server.Address();
    address.host = QStringLiteral("localhost");
    SmtpSession session(address);
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
}

TEST_P(SmtpSecurityTest, CertificateOfAnotherHostIsNotTrusted) {
    Traits traits = Protected(GetParam());
    traits.certificate = *TestCertificates::Get()->other;
    const FakeSmtpServer server(traits);
    SmtpSession session(server.Address());
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
    EXPECT_EQ(outcome.fate, DeliveryFate::Failed);
    EXPECT_TRUE(outcome.words.contains(QStringLiteral("127.0.0.1"))) << qPrintable(outcome.words);
    EXPECT_FALSE(server.Bytes().contains("MAIL") || HasSecret(server.Bytes(), traits));
}

TEST_P(SmtpSecurityTest, CertificateOfAnUnknownIssuerIsNotTrusted) {
    const Traits traits = Protected(GetParam());
    const FakeSmtpServer server(traits);
    // Another certificate is trusted, or those of the system.
    for (const QString& trusted : {TestCertificates::Get()->other->file, QString()}) {
        SmtpServer address = server.Address();
        address.caFile = trusted;
        SmtpSession session(address);
        const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
        EXPECT_EQ(outcome.fate, DeliveryFate::Failed);
        EXPECT_FALSE(outcome.words.isEmpty());
    }
    EXPECT_FALSE(server.Bytes().contains("MAIL") || HasSecret(server.Bytes(), traits));
}

TEST_P(SmtpSecurityTest, WrongPasswordIsRefused) {
    const FakeSmtpServer server(Protected(GetParam()));
    SmtpServer address = server.Address();
    address.password = QStringLiteral("open barley");
    SmtpSession session(address);
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
    EXPECT_EQ(outcome.fate, DeliveryFate::Refused);
    EXPECT_EQ(outcome.words, QStringLiteral("535 5.7.8 wrong name or password"));
    EXPECT_FALSE(server.Bytes().contains("MAIL"));
}

TEST_P(SmtpSecurityTest, ServerWithoutLogInGetsNothingFromAUser) {
    Traits traits = Protected(GetParam());
    traits.user.clear();
    const FakeSmtpServer server(traits);
    SmtpServer address = server.Address();
    address.user = QStringLiteral("Aladdin");
    SmtpSession session(address);
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
    EXPECT_EQ(outcome.fate, DeliveryFate::Failed);
    EXPECT_FALSE(outcome.words.isEmpty());
    EXPECT_FALSE(server.Bytes().contains("MAIL"));
}

TEST_P(SmtpSecurityTest, ClearServerIsNotTalkedTo) {
    Traits traits = Protected(GetParam());
    traits.security = SmtpSecurity::None;
    traits.letsLogInUnprotected = true;
    const FakeSmtpServer server(traits);
    SmtpServer address = server.Address();
    address.security = GetParam();
    SmtpSession session(address);
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
    EXPECT_EQ(outcome.fate, DeliveryFate::Failed);
    EXPECT_FALSE(outcome.words.isEmpty());
    EXPECT_FALSE(server.Bytes().contains("MAIL") || HasSecret(server.Bytes(), traits));
}

TEST_F(SmtpSecurityTest, PasswordIsNeverSentInClear) {
    Traits traits = Protected(SmtpSecurity::None);
    traits.letsLogInUnprotected = true;
    const FakeSmtpServer server(traits);
    SmtpSession session(server.Address());
    const DeliveryOutcome outcome = session.Deliver(oneRecipient, smallMessage);
    EXPECT_EQ(outcome.fate, DeliveryFate::Failed);
    EXPECT_FALSE(outcome.words.isEmpty());
    EXPECT_EQ(server.Connections(), 0);
}

TEST_F(SmtpSecurityTest, WhatIsSaidBeforeTlsBeginsIsForgotten) {
    Traits traits = Protected(SmtpSecurity::StartTls);
    traits.script = [](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        return scene.step == SmtpStep::StartTls ? std::optional(SmtpAnswer{"220 ready\r\n250 injected\r\n"})
                                                : std::nullopt;
    };
    const FakeSmtpServer server(traits);
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Failed);
    EXPECT_FALSE(HasSecret(server.Bytes(), traits));
}

TEST_F(SmtpSecurityTest, OffersFromBeforeTlsDoNotCount) {
    Traits traits = Protected(SmtpSecurity::StartTls);
    traits.script = [](const SmtpScene& scene) -> std::optional<SmtpAnswer> {
        return scene.step == SmtpStep::HelloAgain ? std::optional(SmtpAnswer{"250-fake.example\r\n250 AUTH LOGIN\r\n"})
                                                  : std::nullopt;
    };
    traits.lookAhead = std::chrono::milliseconds(20);
    const FakeSmtpServer server(traits);
    SmtpSession session(server.Address());
    EXPECT_EQ(session.Deliver(oneRecipient, smallMessage).fate, DeliveryFate::Delivered);
    EXPECT_EQ(server.MostCommandsTogether(), 1);
    EXPECT_EQ(server.Taken().at(0).mail, "MAIL FROM:<joe@example.com>");
}

} // namespace

} // namespace quellbox
