#include "tests/passwords/SecretSession.h"
#include "tests/support/PasswordStoreRules.h"

#include <cstdio>

namespace quellbox {

namespace {

const TriedPasswordStore realStore{"GnomeKeyring", MakePasswordStore};
INSTANTIATE_TEST_SUITE_P(Unlocked, PasswordStoreRules, testing::Values(realStore));

class SecretStoreTest : public testing::Test {
protected:
    std::unique_ptr<PasswordStore> store_ = MakePasswordStore();
    PasswordStoreCaller call_{*store_};
    const QString account_ = Text("smtp:joe@mail.example:587");
};

using Unlocked = SecretStoreTest;
using Locked = SecretStoreTest;
using Nobody = SecretStoreTest;

TEST_F(Unlocked, PasswordIsInNoFile) {
    ASSERT_EQ(call_.Write(account_, Text("Opensesame-1234")), QString());
    EXPECT_EQ(call_.Read(account_).password, Text("Opensesame-1234"));
    EXPECT_EQ(SecretSession::Current().FilesWith("Opensesame").join(QLatin1Char(' ')), QString());
    EXPECT_EQ(SecretSession::Current().FilesWith(QByteArray("Opensesame-1234").toBase64()).join(QLatin1Char(' ')),
              QString());
}

TEST_F(Unlocked, PasswordOutlivesTheProgramThatKeepsIt) {
    ASSERT_EQ(call_.Write(account_, Text("secret")), QString());
    SecretSession::Current().EndKeeper();
    PasswordAnswer answer = call_.Read(account_);
    EXPECT_EQ(answer.password, Text("secret")) << answer.error.toStdString();
}

TEST_F(Locked, LockedStoreIsNoEmptyOne) {
    ASSERT_EQ(call_.Write(account_, Text("secret")), QString());
    ASSERT_TRUE(SecretSession::Current().Lock());
    const PasswordAnswer answer = call_.Read(account_);
    EXPECT_EQ(answer.password, std::nullopt);
    std::printf("reading: %s\n", qPrintable(answer.error));
    const QString error = call_.Write(account_, Text("other"));
    std::printf("writing: %s\n", qPrintable(error));
    const QString removal = call_.Remove(account_);
    std::printf("removing: %s\n", qPrintable(removal));
}

TEST_F(Nobody, IsToldInWords) {
    const PasswordAnswer answer = call_.Read(account_);
    EXPECT_EQ(answer.password, std::nullopt);
    std::printf("reading: %s\n", qPrintable(answer.error));
    EXPECT_TRUE(answer.error.startsWith(Text("There is no password store"))) << answer.error.toStdString();
    EXPECT_EQ(call_.Write(account_, Text("secret")), answer.error);
    EXPECT_EQ(call_.Remove(account_), answer.error);
    EXPECT_EQ(SecretSession::Current().FilesWith("secret").join(QLatin1Char(' ')), QString());
}

} // namespace

} // namespace quellbox
