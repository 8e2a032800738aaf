#include "mail/HeaderFields.h"
#include "mail/MailMessage.h"

#include <QFile>

#include <gtest/gtest.h>

namespace quellbox {

using namespace Qt::StringLiterals;

namespace {

/// Reads the sender in both ways; they must agree.
QString Sender(const QByteArray& bytes) {
    MailMessage message;
    EXPECT_EQ(message.LoadBytes(bytes), 0);
    const QString sender = ParseHeaderFields(bytes).sender;
    EXPECT_EQ(sender, message.Sender());
    return sender;
}

QByteArray With(const QByteArray& name) {
    return "To: t\n" + name + ": somebody\n\nbody\n";
}

} // namespace

TEST(FieldName, IsNotAnotherOneForItsDeviantBytes) {
    QFile file(QStringLiteral(QUELLBOX_TEST_DATA "/no-break-space-in-field-name.eml"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(Sender(file.readAll()), QString());
    for (const char* name : {"From\xA0",
                             "\xA0"
                             "From",
                             "From\xC2\xA0", "From\xE2\x80\x8B", "From\x85", "=?utf-8?Q?From?="}) {
        EXPECT_EQ(Sender(With(name)), QString()) << name;
    }
}

TEST(FieldName, MayHaveAnyCaseAndBlanksBeforeTheColon) {
    for (const char* name : {"From", "FROM", "fRoM", "From ", "From \t"}) {
        EXPECT_EQ(Sender(With(name)), u"somebody"_s) << name;
    }
}

TEST(FieldName, ShowsWhatItShouldNotHold) {
    MailMessage message;
    ASSERT_EQ(message.LoadBytes(With("Fr\xA0m")), 0);
    EXPECT_EQ(message.Header(u"Fr\uFFFDm"_s), u"somebody"_s);
}

} // namespace quellbox
