#include "contents/ReadableText.h"

#include "mail/MailMessage.h"

#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>

using namespace quellbox;

namespace {

QString Readable(const QByteArray& bytes) {
    return ReadableText(bytes, ServerProfiles().front());
}

const QByteArray multipart =
    "From: Ann <ann@e.example>\r\nTo: bob@h.example\r\nDate: Mon, 2 Mar 2026 10:00:00 +0000\r\n"
    "Subject: Hello\r\nMIME-Version: 1.0\r\n";

} // namespace

TEST(ReadableText, HeadTextAttachmentsAndLinks) {
    EXPECT_EQ(Readable(multipart +
                       "Content-Type: multipart/mixed; boundary=b\r\n\r\n"
                       "--b\r\nContent-Type: text/html\r\n\r\n<p>Click <a href='http://e.example/x'>here</a></p>\r\n"
                       "--b\r\nContent-Type: application/pdf; name=a.pdf\r\n\r\n%PDF-\r\n"
                       "--b\r\nContent-Type: application/octet-stream; name=b.exe\r\n\r\nx\r\n--b--\r\n")
                  .toStdString(),
              "! The attachment b.exe runs when it is opened.\n\n"
              "From: Ann <ann@e.example>\nTo: bob@h.example\nDate: Mon, 2 Mar 2026 10:00:00 +0000\nSubject: Hello\n\n"
              "Click here [1]\n\n"
              "Attachments:\n  a.pdf (application/pdf, 5 bytes)\n"
              "  b.exe (application/octet-stream, 1 bytes) ! runs when it is opened\n\n"
              "Links:\n[1] http://e.example/x\n");
}

TEST(ReadableText, PrefersThePlainTextUnlessItIsBlank) {
    const QByteArray page =
        "--b\r\nContent-Type: text/html\r\n\r\n<p>page <a href=http://e.example>l</a></p>\r\n--b--\r\n";
    const QByteArray head =
        "Subject: s\r\nMIME-Version: 1.0\r\nContent-Type: multipart/alternative; boundary=b\r\n\r\n";
    EXPECT_EQ(Readable(head + "--b\r\n\r\nplain\r\n" + page),
              QStringLiteral("Subject: s\n\nplain\n\nLinks:\n[1] l: http://e.example\n"));
    EXPECT_EQ(Readable(head + "--b\r\n\r\n \r\n\r\n" + page),
              QStringLiteral("Subject: s\n\npage l [1]\n\nLinks:\n[1] http://e.example\n"));
}

TEST(ReadableText, SeveralTextsStandInTheirOrder) {
    EXPECT_EQ(Readable("Subject: s\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n"
                       "--b\r\n\r\none\r\n--b\r\nContent-Type: text/html\r\n\r\ntwo\r\n--b\r\n\r\nthree\r\n--b--\r\n"),
              QStringLiteral("Subject: s\n\none\n\ntwo\n\nthree\n"));
}

TEST(ReadableText, SetsOffAttachedMessages) {
    EXPECT_EQ(
        Readable("Subject: outer\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n"
                 "--b\r\n\r\nsee below\r\n--b\r\nContent-Type: message/rfc822\r\n\r\n"
                 "From: x@y.example\r\nSubject: inner\r\n\r\na\r\n\r\nb\r\n--b--\r\n"),
        QStringLiteral("Subject: outer\n\nsee below\n\n| Attached message\n| From: x@y.example\n| Subject: inner\n"
                       "\n| a\n| \n| b\n"));
}

TEST(ReadableText, BoundsAttachedMessages) {
    QByteArray bytes = "Subject: innermost\r\n\r\ntext\r\n";
    for (int i = 0; i < 30; ++i) {
        bytes = "Subject: " + QByteArray::number(i) + "\r\nMIME-Version: 1.0\r\nContent-Type: message/rfc822\r\n\r\n" +
                bytes;
    }
    const QString text = Readable(bytes);
    EXPECT_FALSE(text.contains(QStringLiteral("innermost")));
    EXPECT_TRUE(text.contains(QStringLiteral("message/rfc822"))) << text.toStdString();
}

TEST(ReadableText, IsThePlainErrorOfWhatIsNoMessage) {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("no message\n"), QByteArray(2'000'000, 'x')}) {
        MailMessage message;
        EXPECT_NE(message.LoadBytes(bytes), 0);
        EXPECT_EQ(Readable(bytes), message.LastErrorText());
    }
}

TEST(ReadableText, HasNoCharacterThatActs) {
    EXPECT_EQ(Readable("Subject: a\xE2\x80\xAE z\r\n\r\n\x1B[1mbold\rnext\tcell\xE2\x80\xAEtxt\x07\r\n"),
              QStringLiteral("Subject: a z\n\n[1mbold\nnext\tcelltxt\n"));
}

TEST(ReadableText, SaysTheHostOfALinkWithAUserInFront) {
    EXPECT_TRUE(Readable("Subject: s\r\nContent-Type: text/html\r\n\r\n<a href='http://www.bank.de@evil.net/x'>l</a>")
                    .endsWith(QStringLiteral("[1] http://www.bank.de@evil.net/x (evil.net)\n")));
}

TEST(ReadableText, OfEveryMessageOfTheCorpusIsClean) {
    const QString folder = QStringLiteral(QUELLBOX_SOURCE_DIR "/../shared/corpus");
    QDirIterator files(folder, {QStringLiteral("*.eml")}, QDir::Files, QDirIterator::Subdirectories);
    if (!files.hasNext()) {
        GTEST_SKIP() << "no corpus";
    }
    while (files.hasNext()) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString text = Readable(file.readAll());
        EXPECT_FALSE(text.isEmpty()) << file.fileName().toStdString();
        EXPECT_TRUE(std::none_of(text.begin(), text.end(), [](QChar c) {
            return c.category() == QChar::Other_Control && c != u'\n' && c != u'\t';
        })) << file.fileName().toStdString();
    }
}
