#pragma once

#include "tests/support/MemoryPasswordStore.h"
#include "tests/support/PasswordStoreCaller.h"
#include "tests/support/RealFiles.h"

#include <QCoreApplication>
#include <QThread>

#include <functional>
#include <map>
#include <string>

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

    /// The password of an account, or "none", and the error.
    std::string Given(const QString& account) {
        const PasswordAnswer answer = call_.Read(account);
        return answer.password.value_or(Text("none")).toStdString() + answer.error.toStdString();
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
        EXPECT_EQ(call_.Write(account_, password).toStdString(), "");
        EXPECT_EQ(Given(account_), password.toStdString());
    }
}

TEST_P(PasswordStoreRules, NoPasswordIsNoError) {
    EXPECT_EQ(Given(account_), "none");
}

TEST_P(PasswordStoreRules, RemovesThePasswordOfOneAccount) {
    EXPECT_EQ(call_.Write(account_, Text("secret")).toStdString(), "");
    EXPECT_EQ(call_.Write(other_, Text("other")).toStdString(), "");
    EXPECT_EQ(call_.Remove(account_).toStdString(), "");
    EXPECT_EQ(Given(account_), "none");
    EXPECT_EQ(Given(other_), "other");
}

TEST_P(PasswordStoreRules, NothingToRemoveIsNoError) {
    EXPECT_EQ(call_.Remove(account_).toStdString(), "");
    EXPECT_EQ(call_.Remove(account_).toStdString(), "");
}

TEST_P(PasswordStoreRules, DealsWithCallsInTheirOrderAndAnswersOnTheThreadOfTheCaller) {
    QObject context;
    std::map<int, std::string> answers;
    const auto note = [&answers](int call) {
        return [&answers, call](const PasswordAnswer& answer) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            answers[call] += answer.password.value_or(Text("none")).toStdString() + answer.error.toStdString();
        };
    };
    store_->Write(account_, Text("first"), context, note(1));
    store_->Read(account_, context, note(2));
    store_->Write(account_, Text("second"), context, note(3));
    store_->Read(account_, context, note(4));
    store_->Remove(account_, context, note(5));
    store_->Read(account_, context, note(6));
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(RunUntil([&answers] { return answers.size() == 6; }));
    const std::map<int, std::string> wanted{{1, "none"},   {2, "first"}, {3, "none"},
                                            {4, "second"}, {5, "none"},  {6, "none"}};
    EXPECT_EQ(answers, wanted);
}

TEST_P(PasswordStoreRules, AnswersNobodyWhoHasDied) {
    int answers = 0;
    const auto count = [&answers](const PasswordAnswer&) { ++answers; };
    {
        QObject context;
        store_->Write(account_, Text("secret"), context, count);
        store_->Read(account_, context, count);
        store_->Read(other_, context, count);
    }
    // Those above would have been answered before these.
    EXPECT_EQ(Given(account_), "secret");
    EXPECT_EQ(Given(other_), "none");
    EXPECT_EQ(answers, 0);
}

TEST_P(PasswordStoreRules, DyingWhileTheAnswerIsOnItsWayIsNoHarm) {
    for (int turns = 0; turns < 30; ++turns) {
        auto context = std::make_unique<QObject>();
        store_->Write(account_, Text("secret"), *context, [](const PasswordAnswer&) {});
        store_->Read(account_, *context, [](const PasswordAnswer&) {});
        store_->Read(other_, *context, [](const PasswordAnswer&) {});
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents();
        }
    }
    EXPECT_EQ(Given(account_), "secret");
}

TEST_P(PasswordStoreRules, AnswersWhileAnotherAnswerIsBeingDealtWith) {
    QObject context;
    bool isDone = false;
    store_->Write(account_, Text("secret"), context, [&](const PasswordAnswer&) {
        EXPECT_EQ(Given(account_), "secret");
        isDone = true;
    });
    EXPECT_TRUE(RunUntil([&isDone] { return isDone; }));
}

} // namespace quellbox
