#include "tests/passwords/SecretSession.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

// What ctest takes for "skipped".
constexpr int skipped = 77;

/// Runs the tests of one kind of session in such a session. A process cannot leave it for another one.
int main(int argc, char** argv) {
    const std::string wanted = argc > 1 ? argv[1] : "";
    if (wanted != "Unlocked" && wanted != "Locked" && wanted != "Nobody") {
        std::fputs("usage: quellbox_password_tests Unlocked|Locked|Nobody\n", stderr);
        return 2;
    }
    const QCoreApplication application(argc, argv);
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
