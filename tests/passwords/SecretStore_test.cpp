#include "tests/passwords/SecretSession.h"
#include "tests/support/PasswordStoreRules.h"

#include <QProcess>

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
using Restarted = SecretStoreTest;
using Nobody = SecretStoreTest;

TEST_F(Unlocked, PasswordIsInNoFile) {
    ASSERT_EQ(call_.Write(account_, Text("Opensesame-1234")).toStdString(), "");
    EXPECT_EQ(call_.Read(account_).password, Text("Opensesame-1234"));
    EXPECT_EQ(SecretSession::Current().FilesWith("Opensesame").join(QLatin1Char(' ')).toStdString(), "");
    const QByteArray encoded = QByteArray("Opensesame-1234").toBase64();
    EXPECT_EQ(SecretSession::Current().FilesWith(encoded).join(QLatin1Char(' ')).toStdString(), "");
}

/// What another program finds, as this one prints it for the argument "Read".
std::string GivenToAnotherProgram(const QString& account) {
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(), {Text("Read"), account});
    EXPECT_TRUE(program.waitForFinished(60'000));
    return program.readAllStandardOutput().toStdString();
}

TEST_F(Restarted, PasswordOutlivesTheProgramThatKeepsIt) {
    ASSERT_EQ(call_.Write(account_, Text("secret")).toStdString(), "");
    ASSERT_TRUE(SecretSession::Current().EndKeeper());
    EXPECT_EQ(GivenToAnotherProgram(account_), "secret");
    // This one stays with the keeper that has gone, and is told so.
    const PasswordAnswer answer = call_.Read(account_);
    EXPECT_EQ(answer.password, std::nullopt);
    EXPECT_TRUE(answer.error.startsWith(Text("The password store cannot be used: "))) << answer.error.toStdString();
}

TEST_F(Locked, LockedStoreIsNoEmptyOne) {
    const QString other = Text("smtp:joe@mail.example:465");
    ASSERT_EQ(call_.Write(account_, Text("secret")).toStdString(), "");
    ASSERT_TRUE(SecretSession::Current().Lock());
    const std::string locked = "The password store is locked.";
    const PasswordAnswer answer = call_.Read(account_);
    EXPECT_EQ(answer.password, std::nullopt);
    EXPECT_EQ(answer.error.toStdString(), locked);
    EXPECT_EQ(call_.Write(account_, Text("other")).toStdString(), locked);
    EXPECT_EQ(call_.Remove(account_).toStdString(), locked);
    // What is not in there is known without opening it.
    EXPECT_EQ(call_.Read(other).error.toStdString(), "");
    EXPECT_EQ(call_.Remove(other).toStdString(), "");
}

TEST_F(Nobody, IsToldInWords) {
    const PasswordAnswer answer = call_.Read(account_);
    EXPECT_EQ(answer.password, std::nullopt);
    EXPECT_TRUE(answer.error.startsWith(Text("There is no password store."))) << answer.error.toStdString();
    EXPECT_EQ(call_.Write(account_, Text("secret")).toStdString(), answer.error.toStdString());
    EXPECT_EQ(call_.Remove(account_).toStdString(), answer.error.toStdString());
    EXPECT_EQ(SecretSession::Current().FilesWith("secret").join(QLatin1Char(' ')).toStdString(), "");
}

} // namespace

} // namespace quellbox
