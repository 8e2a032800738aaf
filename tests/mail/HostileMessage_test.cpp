#include "mail/HeaderFields.h"
#include "mail/LoadError.h"
#include "mail/MailMessage.h"
#include "mail/MessageParser.h"

#include <QThread>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

LoadError Load(const QByteArray& bytes) {
    MailMessage message;
    return static_cast<LoadError>(message.LoadBytes(bytes));
}

QByteArray NestedMultiparts(int depth) {
    QByteArray bytes = "From: x\n";
    for (int i = 0; i < depth; ++i) {
        const QByteArray boundary = "b" + QByteArray::number(i);
        bytes += "Content-Type: multipart/mixed; boundary=" + boundary + "\n\n--" + boundary + "\n";
    }
    return bytes + "\nleaf\n";
}

QByteArray Siblings(int count) {
    QByteArray bytes = "Content-Type: multipart/mixed; boundary=b\n\n";
    for (int i = 0; i < count; ++i)
        bytes += "--b\n\nx\n";
    return bytes + "--b--\n";
}

} // namespace

TEST(HostileMessage, NestingIsBounded) {
    MailMessage message;
    EXPECT_EQ(message.LoadBytes(NestedMultiparts(kMaximumDepth)), 0);
    EXPECT_EQ(message.Parts().size(), 1U);
    EXPECT_EQ(Load(NestedMultiparts(kMaximumDepth + 1)), LoadError::TooDeep);
}

TEST(HostileMessage, HundredThousandNestedMultipartsNeedLittleStack) {
    const QByteArray bytes = NestedMultiparts(100'000);
    LoadError error = LoadError::None;
    const std::unique_ptr<QThread> thread(QThread::create([&] { error = Load(bytes); }));
    thread->setStackSize(1U << 20); // what a main thread has on Windows
    thread->start();
    thread->wait();
    EXPECT_EQ(error, LoadError::TooDeep);
}

TEST(HostileMessage, HundredThousandNestedMessagesAreOneLeaf) {
    QByteArray bytes = "From: x\n";
    for (int i = 0; i < 100'000; ++i)
        bytes += "Content-Type: message/rfc822\n\n";
    MailMessage message;
    EXPECT_EQ(message.LoadBytes(bytes), 0);
    EXPECT_EQ(message.Parts().size(), 1U);
}

TEST(HostileMessage, NumberOfPartsIsBounded) {
    EXPECT_EQ(Load(Siblings(kMaximumParts)), LoadError::None);
    EXPECT_EQ(Load(Siblings(kMaximumParts + 1)), LoadError::TooManyParts);
}

TEST(HostileMessage, NumberOfFieldsIsBounded) {
    EXPECT_EQ(Load("A: b\n" + QByteArray("a:\n").repeated(kMaximumFields - 1) + "\n"), LoadError::None);
    EXPECT_EQ(Load("A: b\n" + QByteArray("a:\n").repeated(kMaximumFields) + "\n"), LoadError::TooManyFields);
    const QByteArray part = "--b\n" + QByteArray("a:\n").repeated(kMaximumFields) + "\nx\n--b--\n";
    EXPECT_EQ(Load("Content-Type: multipart/mixed; boundary=b\n\n" + part), LoadError::TooManyFields);
}

TEST(HostileMessage, ThreeHundredThousandFieldsAreTooLargeForBothReaders) {
    const QByteArray bytes = QByteArray("X-Field: value\n").repeated(300'000) + "\nbody";
    EXPECT_EQ(Load(bytes), LoadError::HeaderTooLarge);
    EXPECT_EQ(static_cast<LoadError>(ParseHeaderFields(bytes).errorCode), LoadError::HeaderTooLarge);
}

TEST(HostileMessage, NulBytesEverywhereAreHarmless) {
    QByteArray bytes = "Subject: a@b\nContent-Type: multipart/mixed; boundary=b\n\n--b\nX: c@d\n\nte@xt\n--b--\n";
    bytes.replace('@', '\0');
    MailMessage message;
    EXPECT_EQ(message.LoadBytes(bytes), 0);
    EXPECT_EQ(message.Subject(), QStringLiteral("ab"));
    ASSERT_EQ(message.Parts().size(), 1U);
    EXPECT_EQ(message.Parts()[0].text.size(), 5);
}

TEST(HostileMessage, BothReadersAgreeOnEveryTruncationAndManyDamages) {
    const QByteArray whole =
        "From x\r\nTo: =?utf-8?Q?=C3=BC?= <a@b>,\r\n c\r\nbad line\r\nFrom : \"q\" <f@g>\r\n"
        "Content-Type: text/plain\r\nSubject: =?iso-2022-jp?B?GyRCRnw=?= x\r\nX-SCL: 5 10%\r\n\r\nb";
    const auto expectSame = [](const QByteArray& bytes) {
        const HeaderFields fields = ParseHeaderFields(bytes);
        MailMessage message;
        ASSERT_EQ(fields.errorCode, message.LoadBytes(bytes)) << bytes.toPercentEncoding().toStdString();
        ASSERT_EQ(fields.recipient, message.Recipient()) << bytes.toPercentEncoding().toStdString();
        ASSERT_EQ(fields.sender, message.Sender()) << bytes.toPercentEncoding().toStdString();
        ASSERT_EQ(fields.subject, message.Subject()) << bytes.toPercentEncoding().toStdString();
        ASSERT_EQ(FieldValues(bytes, WantedFields({"X-SCL"})).front(), message.Header(QStringLiteral("X-SCL")))
            << bytes.toPercentEncoding().toStdString();
    };
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        expectSame(whole.first(size));
        expectSame("rubbish\r\n" + whole.first(size));
    }
    for (qsizetype at = 0; at < whole.size(); ++at) {
        for (const char byte : {'\0', '\n', '\r', ':', ' ', '\xFF', '=', '?', '\x7F', '\x01', '\t'}) {
            QByteArray damaged = whole;
            damaged[at] = byte;
            expectSame(damaged);
        }
    }
}

} // namespace quellbox
