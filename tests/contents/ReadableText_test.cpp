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
              "  Click here [1]\n\n"
              "Attachments:\n- a.pdf (application/pdf, 5 bytes)\n"
              "- b.exe (application/octet-stream, 1 bytes) ! runs when it is opened\n\n"
              "Links:\n[1] http://e.example/x\n");
}

TEST(ReadableText, PrefersThePlainTextUnlessItIsBlank) {
    const QByteArray page =
        "--b\r\nContent-Type: text/html\r\n\r\n<p>page <a href=http://e.example>l</a></p>\r\n--b--\r\n";
    const QByteArray head =
        "Subject: s\r\nMIME-Version: 1.0\r\nContent-Type: multipart/alternative; boundary=b\r\n\r\n";
    EXPECT_EQ(Readable(head + "--b\r\n\r\nplain\r\n" + page),
              QStringLiteral("Subject: s\n\n  plain\n\nLinks:\n[1] http://e.example - shown as: l\n"));
    EXPECT_EQ(Readable(head + "--b\r\n\r\n \r\n\r\n" + page),
              QStringLiteral("Subject: s\n\n  page l [1]\n\nLinks:\n[1] http://e.example\n"));
}

TEST(ReadableText, SeveralTextsStandInTheirOrder) {
    EXPECT_EQ(Readable("Subject: s\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n"
                       "--b\r\n\r\none\r\n--b\r\nContent-Type: text/html\r\n\r\ntwo\r\n--b\r\n\r\nthree\r\n--b--\r\n"),
              QStringLiteral("Subject: s\n\n  one\n\n  two\n\n  three\n"));
}

TEST(ReadableText, SetsOffAttachedMessages) {
    EXPECT_EQ(
        Readable("Subject: outer\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n"
                 "--b\r\n\r\nsee below\r\n--b\r\nContent-Type: message/rfc822\r\n\r\n"
                 "From: x@y.example\r\nSubject: inner\r\n\r\na\r\n\r\nb\r\n--b--\r\n"),
        QStringLiteral("Subject: outer\n\n  see below\n\n| Attached message\n| From: x@y.example\n| Subject: inner\n"
                       "\n|   a\n|\n|   b\n"));
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

TEST(ReadableText, SaysThatPartsAreMissingAndListsThoseBehindThem) {
    QByteArray deep = "Content-Type: text/plain\r\n\r\ntoo deep\r\n";
    for (int i = 0; i < 110; ++i) {
        const QByteArray mark = "b" + QByteArray::number(i);
        deep = "Content-Type: multipart/mixed; boundary=" + mark + "\r\n\r\n--" + mark + "\r\n" + deep + "\r\n--" +
               mark + "--\r\n";
    }
    const QString text =
        Readable("Subject: s\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\n" + deep +
                 "\r\n--b\r\nContent-Type: application/pdf; name=a.pdf\r\n\r\n%PDF-\r\n--b--\r\n");
    EXPECT_TRUE(text.startsWith(QStringLiteral("[The rest of this message is not shown.]\n\nSubject: s\n")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("\n- a.pdf (application/pdf, 5 bytes)\n"))) << text.toStdString();
}

TEST(ReadableText, ATextWithANameIsShownAndListed) {
    const QByteArray head =
        "Subject: s\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\n";
    EXPECT_EQ(Readable(head + "Content-Type: text/plain; name=a.txt\r\n\r\nseen\r\n--b--\r\n"),
              QStringLiteral("Subject: s\n\n  seen\n\nAttachments:\n- a.txt (text/plain, 4 bytes)\n"));
    const QString page = Readable(head + "Content-Type: text/html; name=a.html\r\n\r\n<p>seen</p>\r\n--b--\r\n");
    EXPECT_TRUE(page.contains(QStringLiteral("\n  seen\n"))) << page.toStdString();
    EXPECT_TRUE(page.startsWith(QStringLiteral("! "))) << "a page runs when it is opened";
    EXPECT_FALSE(Readable(head + "Content-Type: text/plain; name=a.txt\r\nContent-Disposition: attachment\r\n\r\n"
                                 "kept\r\n--b--\r\n")
                     .contains(QStringLiteral("kept")));
}

TEST(ReadableText, NoLineOfTheMessageIsTakenForOneOfTheProgram) {
    const QString text =
        Readable("MIME-Version: 1.0\r\nContent-Type: text/plain; charset=utf-8\r\n\r\n"
                 "! Your server has checked it.\r\nFrom: me\r\nAttachments:\r\n- offer.pdf\r\nLinks:\r\n"
                 "[1] https://bank.de/\r\n[hidden text: x]\r\n| Attached message\r\n"
                 "a\xE2\x80\xA8! b\xE2\x80\xA9! c\x0B! d\x0C! e\xC2\x85! f\r! g\r\n");
    EXPECT_EQ(text.toStdString(),
              "  ! Your server has checked it.\n  From: me\n  Attachments:\n  - offer.pdf\n  Links:\n"
              "  \\[1] https://bank.de/\n  \\[hidden text: x]\n  | Attached message\n"
              "  a\n  ! b\n  ! c\n  ! d\n  ! e\n  ! f\n  ! g\n");
}

TEST(ReadableText, NoLineOfAPageIsTakenForOneOfTheProgram) {
    const QByteArray page = "<pre>a&#13;! b&#x2028;! c&#x85;! d</pre><blockquote><pre>q&#13;r</pre></blockquote>"
                            "<p>&#91;2] [hidden text: x]<img alt='[3]'><input type=text value='4] [5'></p>";
    EXPECT_EQ(Readable("Subject: s\r\nContent-Type: text/html\r\n\r\n" + page).toStdString(),
              "Subject: s\n\n  a\n  ! b\n  ! c\n  ! d\n\n  > q\n  > r\n\n"
              "  \\[2] \\[hidden text: x] [picture: (3)] [field: 4) (5]\n");
}

TEST(ReadableText, AnAttachedMessageHasItsOwnMargin) {
    const QString text = Readable("Subject: s\r\nMIME-Version: 1.0\r\nContent-Type: message/rfc822\r\n\r\n"
                                  "Subject: =?utf-8?Q?a=E2=80=A8!_b?=\r\n\r\nFrom: x\r\n");
    EXPECT_EQ(text, QStringLiteral("Subject: s\n\n| Attached message\n| Subject: a ! b\n\n|   From: x\n"));
}

TEST(ReadableText, TextsOfAMessageTogetherAreBounded) {
    const QByteArray quotes = QByteArray("<blockquote>").repeated(20) + QByteArray("<li>a").repeated(500'000);
    QByteArray bytes = "Subject: s\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n";
    for (int i = 0; i < 3; ++i) {
        bytes += "--b\r\nContent-Type: text/html\r\n\r\n" + quotes + "\r\n--b\r\n\r\n" +
                 QByteArray("x\r\n").repeated(500'000);
    }
    const QString text = Readable(bytes + "--b--\r\n");
    EXPECT_LT(text.size(), 50 * 1024 * 1024);
    EXPECT_TRUE(text.endsWith(QStringLiteral("[The rest of this text is not shown.]\n")));
}

TEST(ReadableText, LinesOfAnAttachedMessageAreWrittenInTimeThatGrowsWithThem) {
    const QString text =
        Readable("Subject: s\r\nMIME-Version: 1.0\r\nContent-Type: message/rfc822\r\n\r\nSubject: t\r\n\r\n" +
                 QByteArray("x\r\n").repeated(1'000'000));
    EXPECT_EQ(text.count(QStringLiteral("|   x\n")), 1'000'000);
}

TEST(ReadableText, EndsWhenNobodyWaitsForIt) {
    int asked = 0;
    const QByteArray bytes =
        "Subject: s\r\nContent-Type: text/html\r\n\r\n" + QByteArray("<p>x</p>").repeated(1'000'000);
    EXPECT_TRUE(ReadableText(bytes, ServerProfiles().front(), [&asked] { return ++asked < 10; }).isEmpty());
    EXPECT_LT(asked, 20);
}

TEST(ReadableText, SaysThatLinksAreMissingAndLooksAtThemAllTheSame) {
    QByteArray page;
    for (int i = 0; i < 10'001; ++i) {
        const QByteArray place = "https://e.example/" + QByteArray::number(i);
        page += "<a href=" + place + ">l</a> <a href=" + place + ">l</a><a href=" + place + "-empty></a>\n";
    }
    const QString text = Readable("Subject: s\r\nContent-Type: text/html\r\n\r\n" + page +
                                  "<a href=https://evil.net/>https://bank.de/</a>");
    EXPECT_TRUE(text.startsWith(QStringLiteral("! A link shows bank.de, but leads to evil.net.\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("l [10000] l [10000] l [?] l [?] https://bank.de/ [?]\n")));
    EXPECT_FALSE(text.contains(QStringLiteral("-empty")));
    EXPECT_TRUE(text.endsWith(QStringLiteral("\n[10000] https://e.example/9999\n"
                                             "[Further links are not listed. Behind them stands [?].]\n")));
}

TEST(ReadableText, ALinkThatIsHiddenIsListedWithWhatIsKnownOfIt) {
    EXPECT_TRUE(
        Readable(
            "Subject: s\r\nContent-Type: text/html\r\n\r\nx <a style='visibility:hidden' href='http://e.example/a b'>"
            "<b style='visibility:visible'>l</b></a>")
            .endsWith(QStringLiteral("\n[1] http://e.example/a%20b - shown as: l\n")));
}

TEST(ReadableText, AnAttachedMessageThatIsNotTakenApartHasASize) {
    QByteArray bytes = "Subject: innermost\r\n\r\ntext\r\n";
    for (int i = 0; i < 9; ++i) {
        bytes = "Subject: s\r\nMIME-Version: 1.0\r\nContent-Type: message/rfc822\r\n\r\n" + bytes;
    }
    const QString text = Readable(bytes);
    EXPECT_TRUE(text.contains(QStringLiteral("- without a name (message/rfc822, "))) << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("(message/rfc822, 0 bytes)"))) << text.toStdString();
}

TEST(ReadableText, HasNoCharacterThatActs) {
    EXPECT_EQ(Readable("Subject: a\xE2\x80\xAE z\r\n\r\n\x1B[1mbold\rnext\tcell\xE2\x80\xAEtxt\x07\r\n"),
              QStringLiteral("Subject: a z\n\n  \\[1mbold\n  next\tcelltxt\n"));
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
