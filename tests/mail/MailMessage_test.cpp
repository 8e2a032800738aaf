#include "mail/MailMessage.h"

#include "mail/LoadError.h"
#include "tests/support/MemoryFileSystem.h"

#include <QFile>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

QByteArray DataFile(const char* name) {
    QFile file(QStringLiteral(QUELLBOX_TEST_DATA "/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

QStringList Names(const MessagePart& part) {
    QStringList names;
    for (const auto& header : part.headers)
        names << header.first;
    return names;
}

/// Loads a message that has exactly one part, and returns the part.
MessagePart OnlyPart(const QByteArray& bytes) {
    MailMessage message;
    EXPECT_EQ(message.LoadBytes(bytes), 0);
    EXPECT_EQ(message.Parts().size(), 1U);
    return message.Parts().empty() ? MessagePart{} : message.Parts().front();
}

} // namespace

TEST(MailMessage, NothingIsLoadedAtFirstAndAfterReset) {
    MailMessage message;
    EXPECT_TRUE(message.Parts().empty());
    EXPECT_EQ(message.LoadBytes("Subject: a\n\nb"), 0);
    EXPECT_EQ(message.Subject(), QStringLiteral("a"));
    message.Reset();
    EXPECT_TRUE(message.Parts().empty());
    EXPECT_FALSE(message.Header(QStringLiteral("Subject")).has_value());
}

TEST(MailMessage, FailedLoadForgetsTheMessageBefore) {
    MailMessage message;
    EXPECT_EQ(message.LoadBytes("Subject: a\n\nb"), 0);
    EXPECT_EQ(message.LoadBytes(""), static_cast<int>(LoadError::Empty));
    EXPECT_EQ(message.LastErrorText(), QStringLiteral("The file is empty"));
    EXPECT_TRUE(message.Parts().empty());
    EXPECT_TRUE(message.Subject().isEmpty());
}

TEST(MailMessage, LoadsThroughTheFileSystemAndTellsWhatFailed) {
    MemoryFileSystem files;
    files.Add(QStringLiteral("/a.eml"), "Subject: a\n\nb", 0);
    MailMessage message;
    EXPECT_EQ(message.Load(files, QStringLiteral("/a.eml")), 0);
    EXPECT_EQ(message.Subject(), QStringLiteral("a"));
    EXPECT_TRUE(message.LastErrorText().isEmpty());
    EXPECT_EQ(message.Load(files, QStringLiteral("/b.eml")), static_cast<int>(LoadError::Unreadable));
    EXPECT_TRUE(message.LastErrorText().contains(QStringLiteral("/b.eml")));
}

TEST(MailMessage, PropertiesAreTheSixFieldsInAnyCase) {
    MailMessage message;
    EXPECT_EQ(message.LoadBytes("Date: d\nFrom: f\nTo: t\nCc: c\nBcc: b\nSubject: s\nX-Other: o\n\n"), 0);
    const auto property = [&](const char* name) { return message.Property(QLatin1String(name)).toStdString(); };
    EXPECT_EQ(property("DATE") + property("FROM") + property("TO") + property("CC") + property("BCC") +
                  property("Subject"),
              "dftcbs");
    EXPECT_EQ(property("X-Other"), "");
    EXPECT_EQ(message.Header(QStringLiteral("x-other")), QStringLiteral("o"));
    EXPECT_FALSE(message.Header(QStringLiteral("absent")).has_value());
}

TEST(MailMessage, OnlyPartHasTheWholeHeaderInTheOrderOfTheFile) {
    const MessagePart part = OnlyPart(DataFile("plain-latin1.eml"));
    EXPECT_EQ(Names(part), QStringList({QStringLiteral("From"), QStringLiteral("Content-Type"), QStringLiteral("To"),
                                        QStringLiteral("Content-Transfer-Encoding"), QStringLiteral("Subject")}));
    EXPECT_EQ(part.text, QStringLiteral("Caf\u00E9\r\nzwei\r\n"));
    EXPECT_TRUE(part.attachment.isEmpty());
}

TEST(MailMessage, HeaderFindsContentFieldsOfTheMessageToo) {
    MailMessage message;
    EXPECT_EQ(message.LoadBytes(DataFile("nested-multipart.eml")), 0);
    EXPECT_TRUE(message.Header(QStringLiteral("content-type"))->startsWith(QStringLiteral("multipart/mixed")));
}

TEST(MailMessage, PartsAreTheLeavesDepthFirst) {
    MailMessage message;
    EXPECT_EQ(message.LoadBytes(DataFile("nested-multipart.eml")), 0);
    ASSERT_EQ(message.Parts().size(), 3U);
    EXPECT_EQ(message.Parts()[0].text, QStringLiteral("plain"));
    EXPECT_EQ(message.Parts()[1].text, QStringLiteral("<p>html</p>"));
    EXPECT_EQ(message.Parts()[2].text, QString());
    EXPECT_EQ(message.Parts()[2].attachment, QStringLiteral("r\u00E9sum\u00E9.pdf"));
    EXPECT_EQ(Names(message.Parts()[0]), QStringList(QStringLiteral("Content-Type")));
}

TEST(MailMessage, AttachedMessageIsOneLeaf) {
    MailMessage message;
    EXPECT_EQ(message.LoadBytes(DataFile("attached-message.eml")), 0);
    ASSERT_EQ(message.Parts().size(), 2U);
    EXPECT_EQ(message.Parts()[1].attachment, QStringLiteral("inner.eml"));
    EXPECT_TRUE(message.Parts()[1].text.isEmpty());
    EXPECT_EQ(message.Subject(), QStringLiteral("outer"));
}

TEST(MailMessage, MessageWithoutABodyHasNoPart) {
    for (const char* bytes : {"Subject: a", "Subject: a\n", "Subject: a\r\n\r\n",
                              "Content-Type: multipart/mixed; boundary=b\n\n", "Content-Type: message/rfc822\n\n"}) {
        MailMessage message;
        EXPECT_EQ(message.LoadBytes(bytes), 0) << bytes;
        EXPECT_TRUE(message.Parts().empty()) << bytes;
    }
}

TEST(MailMessage, BodyOfOneBlankLineIsAPart) {
    EXPECT_EQ(OnlyPart("Subject: a\n\n\n").text, QStringLiteral("\r\n"));
}

TEST(MailMessage, MultipartWithoutPartsIsOneLeafWithItsText) {
    const MessagePart part = OnlyPart("Subject: a\nContent-Type: multipart/mixed\n\nno boundary\n");
    EXPECT_TRUE(part.text.contains(QStringLiteral("no boundary")));
    EXPECT_EQ(Names(part), QStringList({QStringLiteral("Subject"), QStringLiteral("Content-Type")}));
}

TEST(MailMessage, UnclosedBoundaryKeepsTheLastPart) {
    MailMessage message;
    EXPECT_EQ(message.LoadBytes("Content-Type: multipart/mixed; boundary=b\n\n--b\n\none\n--b\n\ntwo"), 0);
    ASSERT_EQ(message.Parts().size(), 2U);
    EXPECT_EQ(message.Parts()[0].text, QStringLiteral("one"));
    EXPECT_EQ(message.Parts()[1].text, QStringLiteral("two"));
}

TEST(MailMessage, LineEndsBecomeCrlfWhateverTheFileHas) {
    EXPECT_EQ(OnlyPart("Subject: a\n\n1\n2\r\n3\r4").text, QStringLiteral("1\r\n2\r\n3\r\n4"));
}

TEST(MailMessage, TextOfAnUnknownOrWrongCharacterSetIsUndeclared) {
    EXPECT_EQ(OnlyPart("Content-Type: text/plain; charset=x-nowhere\n\n\xE9").text, QStringLiteral("\u00E9"));
    EXPECT_EQ(OnlyPart("Content-Type: text/plain; charset=us-ascii\n\n\xC3\xA9").text, QStringLiteral("\u00E9"));
    EXPECT_EQ(OnlyPart("Subject: none\n\n\xC3\xA9").text, QStringLiteral("\u00E9"));
    EXPECT_EQ(OnlyPart("Content-Type: text/plain; charset=utf-8\n\na\xE9").text, QStringLiteral("a\uFFFD"));
}

TEST(MailMessage, TextLosesItsByteOrderMark) {
    EXPECT_EQ(OnlyPart("Subject: a\n\n\xEF\xBB\xBFtext").text, QStringLiteral("text"));
}

TEST(MailMessage, Base64AndQuotedPrintableBodiesAreDecoded) {
    EXPECT_EQ(OnlyPart("Content-Transfer-Encoding: base64\nSubject: a\n\naGkKdHdv\n").text,
              QStringLiteral("hi\r\ntwo"));
    EXPECT_EQ(OnlyPart("Content-Transfer-Encoding: quoted-printable\n\na=3D=\nb\n").text, QStringLiteral("a=b\r\n"));
}

TEST(MailMessage, AttachmentNameIsDecodedInEveryFashion) {
    const auto name = [](const QByteArray& field) {
        return OnlyPart("Content-Type: application/x\n" + field + "\n\nbody").attachment.toStdString();
    };
    EXPECT_EQ(name("Content-Disposition: attachment; filename=\"a b.txt\""), "a b.txt");
    EXPECT_EQ(name("Content-Disposition: attachment; filename*=utf-8''%C3%BC.txt"), "ü.txt");
    EXPECT_EQ(name("Content-Disposition: attachment; filename*0=\"long-\"; filename*1=\"name.txt\""), "long-name.txt");
    EXPECT_EQ(name("Content-Disposition: attachment; filename=\"=?utf-8?Q?=C3=BC.txt?=\""), "ü.txt");
    EXPECT_EQ(name("Content-Disposition: attachment; filename=\"\xFC.txt\""), "ü.txt");
    EXPECT_EQ(name("Content-Disposition: attachment"), "");
}

TEST(MailMessage, AttachmentNameFallsBackToTheTypesName) {
    EXPECT_EQ(OnlyPart("Content-Type: application/x; name=n.bin\n\nbody").attachment, QStringLiteral("n.bin"));
}

TEST(MailMessage, AttachmentNameCannotReverseItsExtension) {
    EXPECT_EQ(OnlyPart(DataFile("override-in-file-name.eml")).attachment, QStringLiteral("invoicefdp.exe"));
}

TEST(MailMessage, MboxLineAndByteOrderMarkAreNoPartOfTheMessage) {
    EXPECT_EQ(OnlyPart("\xEF\xBB\xBF"
                       "From x\nSubject: a\n\nFrom here on\n")
                  .text,
              QStringLiteral("From here on\r\n"));
}

} // namespace quellbox
