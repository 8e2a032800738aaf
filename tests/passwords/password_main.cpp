#include "tests/passwords/SecretSession.h"
#include "tests/support/PasswordStoreCaller.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

// What ctest takes for "skipped".
constexpr int skipped = 77;

/// Prints the password of an account in the session of the process that has started this one, and the error.
static int PrintPassword(const QString& account) {
    const auto store = quellbox::MakePasswordStore();
    const quellbox::PasswordAnswer answer = quellbox::PasswordStoreCaller(*store).Read(account);
    std::printf("%s%s", qPrintable(answer.password.value_or(QString())), qPrintable(answer.error));
    return 0;
}

/// Runs the tests of one kind of session in such a session. A process cannot leave it for another one.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const std::string wanted = argc > 1 ? argv[1] : "";
    if (wanted == "Read" && argc > 2) {
        return PrintPassword(QString::fromLocal8Bit(argv[2]));
    }
    if (wanted != "Unlocked" && wanted != "Locked" && wanted != "Restarted" && wanted != "Nobody") {
        std::fputs("usage: quellbox_password_tests Unlocked|Locked|Restarted|Nobody\n", stderr);
        return 2;
    }
    using quellbox::SecretSession;
    SecretSession session(wanted == "Nobody" ? SecretSession::Keeper::None : SecretSession::Keeper::GnomeKeyring);
    if (!session.WhyNot().isEmpty()) {
        std::printf("SKIPPED: %s\n", qPrintable(session.WhyNot()));
        return skipped;
    }
    SecretSession::MakeCurrent(session);
    testing::InitGoogleTest(&argc, argv);
    testing::GTEST_FLAG(filter) = wanted + ".*:" + wanted + "/*";
    return RUN_ALL_TESTS();
}
