#pragma once

#include "tests/support/MemoryPasswordStore.h"
#include "tests/support/PasswordStoreCaller.h"
#include "tests/support/RealFiles.h"

#include <QCoreApplication>
#include <QThread>

#include <functional>

namespace quellbox {

/// A store to be tried, as a test's parameter.
struct TriedPasswordStore {
    const char* name;
    std::function<std::unique_ptr<PasswordStore>()> make;
};

inline void PrintTo(const TriedPasswordStore& store, std::ostream* stream) {
    *stream << store.name;
}

/// What every password store keeps to. Nothing stays of a test, also in a store that is the user's own.
class PasswordStoreRules : public testing::TestWithParam<TriedPasswordStore> {
protected:
    ~PasswordStoreRules() override {
        call_.Remove(account_);
        call_.Remove(other_);
    }

    std::unique_ptr<PasswordStore> store_ = GetParam().make();
    PasswordStoreCaller call_{*store_};
    const QString account_ =
        QStringLiteral("smtp:quellbox-test-%1@mail.example:587").arg(QCoreApplication::applicationPid());
    const QString other_ =
        QStringLiteral("smtp:quellbox-test-%1@mail.example:465").arg(QCoreApplication::applicationPid());
};

TEST_P(PasswordStoreRules, GivesWhatWasWritten) {
    for (const QString& password :
         {Text("plain"), Text(" two  words "), Text("\"quoted\" \\ 'too'"), Text("100%s $(x)"),
          Text("Gr\u00FC\u00DFe \u65E5\u672C \U0001F511"), Text("c2VjcmV0"), QString(1000, QLatin1Char('x'))}) {
        EXPECT_EQ(call_.Write(account_, password), QString());
        const PasswordAnswer answer = call_.Read(account_);
        EXPECT_EQ(answer.password, password);
        EXPECT_EQ(answer.error, QString());
    }
}

TEST_P(PasswordStoreRules, NoPasswordIsNoError) {
    const PasswordAnswer answer = call_.Read(account_);
    EXPECT_EQ(answer.password, std::nullopt);
    EXPECT_EQ(answer.error, QString());
}

TEST_P(PasswordStoreRules, RemovesThePasswordOfOneAccount) {
    EXPECT_EQ(call_.Write(account_, Text("secret")), QString());
    EXPECT_EQ(call_.Write(other_, Text("other")), QString());
    EXPECT_EQ(call_.Remove(account_), QString());
    EXPECT_EQ(call_.Read(account_).password, std::nullopt);
    EXPECT_EQ(call_.Read(other_).password, Text("other"));
}

TEST_P(PasswordStoreRules, NothingToRemoveIsNoError) {
    EXPECT_EQ(call_.Remove(account_), QString());
    EXPECT_EQ(call_.Remove(account_), QString());
}

TEST_P(PasswordStoreRules, AnswersInTheOrderOfTheCallsOnTheThreadOfTheCaller) {
    QObject context;
    QStringList answers;
    const auto note = [&answers](const char* call) {
        return [&answers, call](const PasswordAnswer& answer) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            answers += Text(call) + answer.password.value_or(QString()) + answer.error;
        };
    };
    store_->Write(account_, Text("1"), context, note("write "));
    store_->Read(account_, context, note("read "));
    store_->Write(account_, Text("2"), context, note("write "));
    store_->Read(account_, context, note("read "));
    store_->Remove(account_, context, note("remove "));
    store_->Read(account_, context, note("read "));
    EXPECT_EQ(answers, QStringList());
    EXPECT_TRUE(RunUntil([&answers] { return answers.size() == 6; }));
    EXPECT_EQ(answers.join(QLatin1Char('|')), Text("write |read 1|write |read 2|remove |read "));
}

TEST_P(PasswordStoreRules, AnswersNobodyWhoHasDied) {
    int answers = 0;
    const auto count = [&answers](const PasswordAnswer&) { ++answers; };
    {
        QObject context;
        store_->Write(account_, Text("secret"), context, count);
        store_->Read(account_, context, count);
    }
    // The answers come in order, so those above would have come before this one.
    EXPECT_EQ(call_.Read(account_).password, Text("secret"));
    EXPECT_EQ(answers, 0);
}

TEST_P(PasswordStoreRules, AnswersWhileAnotherAnswerIsBeingDealtWith) {
    QObject context;
    bool isDone = false;
    store_->Write(account_, Text("secret"), context, [&](const PasswordAnswer&) {
        EXPECT_EQ(call_.Read(account_).password, Text("secret"));
        isDone = true;
    });
    EXPECT_TRUE(RunUntil([&isDone] { return isDone; }));
}

} // namespace quellbox
