#pragma once

#include "platform/PasswordStore.h"
#include "tests/support/RunUntil.h"

#include <QObject>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace quellbox {

/// Calls a password store and runs events until the answer is there.
class PasswordStoreCaller {
public:
    explicit PasswordStoreCaller(PasswordStore& store) : store_(store) {}

    PasswordAnswer Read(const QString& account) {
        return Await([&](const PasswordStore::Take& take) { store_.Read(account, context_, take); });
    }

    /// Both return what went wrong; empty when nothing did.
    QString Write(const QString& account, const QString& password) {
        return Await([&](const PasswordStore::Take& take) { store_.Write(account, password, context_, take); }).error;
    }
    QString Remove(const QString& account) {
        return Await([&](const PasswordStore::Take& take) { store_.Remove(account, context_, take); }).error;
    }

private:
    template <class Call>
    PasswordAnswer Await(Call call) {
        // Shared with an answer that comes after all patience.
        const auto answer = std::make_shared<std::optional<PasswordAnswer>>();
        call([answer](const PasswordAnswer& given) {
            EXPECT_FALSE(answer->has_value()) << "a second answer";
            *answer = given;
        });
        EXPECT_FALSE(answer->has_value()) << "an answer before the call has returned";
        EXPECT_TRUE(RunUntil([&answer] { return answer->has_value(); })) << "no answer";
        return answer->value_or(PasswordAnswer{{}, QStringLiteral("no answer")});
    }

    PasswordStore& store_;
    QObject context_;
};

} // namespace quellbox
