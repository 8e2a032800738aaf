#pragma once

#include "delivery/SmtpSession.h"
#include "tests/support/FakeSmtpServer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quellbox {

inline void PrintTo(DeliveryFate fate, std::ostream* out) {
    constexpr const char* names[] = {"Delivered", "Refused", "Failed", "Uncertain"};
    *out << names[static_cast<int>(fate)];
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << bytes.left(2000).toStdString();
}

inline const Envelope oneRecipient{"joe@example.com", {"ann@example.com"}};
inline const Envelope threeRecipients{"joe@example.com", {"ann@example.com", "ben@example.com", "cat@example.com"}};
inline const QByteArray smallMessage = "From: joe@example.com\r\nSubject: a\r\n\r\nHello\r\n";

/// More than the system keeps for a connection whose other side does not read.
inline QByteArray LargeMessage(qsizetype size) {
    const QByteArray line(76, 'x');
    return (line + "\r\n").repeated(size / 78 + 1);
}

/// Certificates that the tests of a program share; null where the program openssl is missing.
struct TestCertificates {
    QTemporaryDir folder;
    std::optional<TestCertificate> right =
        MakeTestCertificate(folder.path(), QStringLiteral("right"), QStringLiteral("IP:127.0.0.1,DNS:localhost"));
    std::optional<TestCertificate> other =
        MakeTestCertificate(folder.path(), QStringLiteral("other"), QStringLiteral("DNS:elsewhere.example"));

    static const TestCertificates* Get() {
        static const TestCertificates certificates;
        return certificates.right && certificates.other ? &certificates : nullptr;
    }
};

} // namespace quellbox
