#include "contents/MessageWarnings.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace quellbox;

namespace {

using WarningKind = MessageWarning::Kind;

std::vector<MessageWarning> WarningsOf(const QByteArray& bytes, const char* profile = "maildir") {
    MessageOutline outline;
    EXPECT_EQ(ReadOutline(bytes, outline), LoadError::None);
    const ReadableBody body = ReadBody(outline);
    return FindWarnings({bytes, outline, body, ProfileOf(QLatin1String(profile))});
}

/// The sentence of a kind; empty where there is none.
QString WarningText(WarningKind kind, const QByteArray& bytes, const char* profile = "maildir") {
    const std::vector<MessageWarning> warnings = WarningsOf(bytes, profile);
    const auto found = std::find_if(warnings.begin(), warnings.end(),
                                    [kind](const MessageWarning& each) { return each.kind == kind; });
    return found == warnings.end() ? QString() : found->text;
}

QByteArray Sent(const QByteArray& envelope, const QByteArray& fields) {
    return "Return-Path: <" + envelope + ">\r\nReceived: from x by mx.home.example\r\n" + fields + "\r\n\r\ntext\r\n";
}

QString LinkWarning(const QByteArray& link) {
    return WarningText(WarningKind::LinkText, "From: a@example.org\r\nContent-Type: text/html\r\n\r\n" + link);
}

QString DomainWarning(const QByteArray& domain) {
    return WarningText(WarningKind::LookAlikeDomain,
                       "From: a@example.org\r\nContent-Type: text/plain; charset=utf-8\r\n\r\nsee http://" + domain +
                           "/x");
}

QByteArray Attached(const QByteArray& type, const QByteArray& name, const QByteArray& content) {
    return "From: a@example.org\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; "
           "boundary=b\r\n\r\n--b\r\n\r\nt\r\n"
           "--b\r\nContent-Type: " +
           type + "\r\nContent-Transfer-Encoding: base64\r\nContent-Disposition: attachment; filename=\"" + name +
           "\"\r\n\r\n" + content.toBase64() + "\r\n--b--\r\n";
}

/// What a program for Windows begins with: 4 bytes at 60 say where its second header stands.
QByteArray WindowsProgram() {
    return "MZ" + QByteArray(58, '\0') + QByteArray("\x80\0\0\0", 4) + QByteArray(64, '\0') + QByteArray("PE\0\0", 4);
}

QString Authentication(const QByteArray& results, const QByteArray& by = "mx.home.example") {
    return WarningText(
        WarningKind::Authentication,
        "Authentication-Results: " + results + "\r\nReceived: from x by " + by +
            " with ESMTP; today\r\nReceived: from y by relay.far.example\r\nFrom: a@example.org\r\n\r\n");
}

} // namespace

TEST(MessageWarnings, EnvelopeSenderOfAnotherOrganization) {
    const QString text =
        WarningText(WarningKind::EnvelopeSender, Sent("x@spam.example", "From: Ann <ann@bank.example>"));
    EXPECT_TRUE(text.contains(QStringLiteral("x@spam.example"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("ann@bank.example")));
    EXPECT_FALSE(WarningText(WarningKind::EnvelopeSender, Sent("a@one.co.uk", "From: b@two.co.uk")).isEmpty());
    EXPECT_FALSE(WarningText(WarningKind::EnvelopeSender,
                             "X-Sender: x@spam.example (Unverified)\r\n"
                             "From: b@two.example\r\n\r\n",
                             "imf")
                     .isEmpty());
}

TEST(MessageWarnings, EnvelopeSenderThatFits) {
    for (const auto& [envelope, fields] : std::initializer_list<std::pair<const char*, const char*>>{
             {"bounce-1@mail.bank.example", "From: ann@bank.example"},
             {"x@news.shop.co.uk", "From: y@shop.co.uk"},
             {"", "From: ann@bank.example"},
             {"x@spam.example", "Subject: without a From"},
             {"a@xn--mller-kva.example", "From: a@mail.m\xC3\xBCller.example"},
             {"x@a.example", "From: a@a.example, b@b.example"}}) {
        EXPECT_EQ(WarningText(WarningKind::EnvelopeSender, Sent(envelope, fields)), QString()) << envelope << fields;
    }
    EXPECT_EQ(WarningText(WarningKind::EnvelopeSender,
                          "X-Sender: a@two.example (Unverified)\r\n"
                          "From: b@two.example\r\n\r\n",
                          "imf"),
              QString());
}

TEST(MessageWarnings, EnvelopeSenderIsNotExcusedByWhatTheSenderWrites) {
    const QString differs = QStringLiteral("different organizations");
    for (const auto& [envelope, fields] : std::initializer_list<std::pair<const char*, const char*>>{
             {"x@evil.net", "From: ann@bank.de\r\nSender: x@evil.net"},
             {"x@evil.net", "From: ann@bank.de\r\nList-Unsubscribe: <mailto:off@evil.net>"},
             {"x@evil.net", "From: ann@bank.de, x@evil.net"},
             {"x@evil.net", "From: ann@bank.de\r\nList-Id: <talk.club.example>"},
             {"SRS0=a=b=other.de=ann@evil.net", "From: ann@bank.de"},
             {"SRS0=a=bank.de=ann@evil.net", "From: ann@bank.de"}}) {
        const QString text = WarningText(WarningKind::EnvelopeSender, Sent(envelope, fields));
        EXPECT_TRUE(text.contains(differs)) << envelope << fields << text.toStdString();
    }
}

TEST(MessageWarnings, NamesWhoHasSentTheMessageOn) {
    for (const auto& [envelope, fields] : std::initializer_list<std::pair<const char*, const char*>>{
             {"SRS0=a=b=bank.de=ann@evil.net", "From: ann@bank.de"},
             {"SRS0+a=b=bank.de=ann=mary=x@evil.net", "From: ann@bank.de"},
             {"SRS1=a=first.example==b=c=bank.de=ann@evil.net", "From: ann@bank.de"},
             {"bounces@evil.net", "From: ann@bank.de\r\nList-Post: <mailto:talk@evil.net>"},
             {"bounces@lists.evil.net", "From: ann@bank.de\r\nList-Id: Talk <talk.evil.net>"}}) {
        const QString text = WarningText(WarningKind::EnvelopeSender, Sent(envelope, fields));
        EXPECT_TRUE(text.contains(QStringLiteral("sent on by")) && text.contains(QStringLiteral("evil.net")))
            << envelope << fields << text.toStdString();
    }
    EXPECT_EQ(WarningText(WarningKind::EnvelopeSender, Sent("SRS0=a=b=bank.de=ann@mail.bank.de", "From: ann@bank.de")),
              QString());
}

TEST(MessageWarnings, ReplyToOfTheListThatHasSentTheMessageOn) {
    const QByteArray fields = "From: ann@bank.de\r\nReply-To: talk@club.example\r\n";
    const auto reply = [&fields](const QByteArray& more) {
        return WarningText(WarningKind::ReplyTo, Sent("bounces@club.example", fields + more));
    };
    EXPECT_TRUE(reply("List-Id: <talk.club.example>").contains(QStringLiteral("sent on")));
    EXPECT_TRUE(reply("List-Id: <talk.other.example>").contains(QStringLiteral("does not belong")));
    EXPECT_TRUE(reply("Sender: talk@club.example").contains(QStringLiteral("does not belong")));
    EXPECT_TRUE(reply("Cc: talk@club.example\r\nTo: talk@club.example").contains(QStringLiteral("does not belong")));
}

TEST(MessageWarnings, ReplyToElsewhere) {
    EXPECT_FALSE(WarningText(WarningKind::ReplyTo, "From: boss@firm.example\r\nReply-To: boss@freemail.example\r\n\r\n")
                     .isEmpty());
    for (const char* fields : {"Reply-To: help@support.firm.example", "Reply-To:", "Subject: no such field"}) {
        EXPECT_EQ(WarningText(WarningKind::ReplyTo, QByteArray("From: boss@firm.example\r\n") + fields + "\r\n\r\n"),
                  QString())
            << fields;
    }
}

TEST(MessageWarnings, NameThatShowsAnotherAddress) {
    for (const char* from :
         {"\"service@paypal.com\" <x@spam.example>", "\"PayPal.com Service\" <x@spam.example>",
          "=?utf-8?q?=22ann=40bank.de=22?= <x@spam.example>", "www.bank.de <x@spam.example>",
          "\"Bank\xC2\xA0"
          "bank.de\" <x@spam.example>",
          "\"Bank,bank.de\" <x@spam.example>", "\"Bank (bank.de)\" <x@spam.example>", "\"md.pl\" <x@spam.example>"}) {
        EXPECT_FALSE(WarningText(WarningKind::DisplayName, QByteArray("From: ") + from + "\r\n\r\n").isEmpty()) << from;
    }
    for (const char* from :
         {"\"ann@bank.de\" <ann@bank.de>", "Amazon.de <news@mail.amazon.de>", "Dr. A. Smith <x@y.example>",
          "J.R.Tolkien <x@y.example>", "x@y.example", "\"Acme Co.Ltd\" <x@y.example>", "\"Acme.Co.Ltd.\" <x@y.example>",
          "\"Ann Smith, M.Sc.\" <x@y.example>", "\"Dr.med. Ann Smith\" <x@y.example>",
          "\"ASP.NET Weekly\" <x@y.example>", "\"Ann @ work\" <x@y.example>", "v1.2 release <x@y.example>"}) {
        EXPECT_EQ(WarningText(WarningKind::DisplayName, QByteArray("From: ") + from + "\r\n\r\n"), QString()) << from;
    }
}

TEST(MessageWarnings, ReadsTheNameAsTheMessageDeclares) {
    const QByteArray fields = "Content-Type: text/plain; charset=windows-1251\r\nFrom: \xE1\xE0\xED\xEA.\xF0\xF4 ";
    const QString text = WarningText(WarningKind::DisplayName, fields + "<x@spam.example>\r\n\r\n");
    EXPECT_TRUE(text.contains(QStringLiteral("\u0431\u0430\u043D\u043A.\u0440\u0444"))) << text.toStdString();
    EXPECT_EQ(WarningText(WarningKind::DisplayName, fields + "<x@xn--80ab2al.xn--p1ai>\r\n\r\n"), QString());
}

TEST(MessageWarnings, LinkThatShowsAnotherHost) {
    for (const char* link :
         {"<a href='http://evil.net/x'>www.bank.de</a>", "<a href='http://evil.net'>https://bank.de/login</a>",
          "<a href='//evil.net/'>bank.de/login</a>", "<a href='http://www.bank.de@evil.net/'>Log in</a>",
          "<a href='http:\\\\evil.net\\www.bank.de'>bank.de</a>", "<a href='http://evil.net/'>see www.bank.de now</a>",
          "<a href='http://evil.net/'>Your&nbsp;bank.de&nbsp;account</a>", "<a href='http://evil.net/'>(bank.de)</a>",
          "<a href='http://evil.net/'>Bank,bank.de.</a>", "<a href='http://evil.net/'>b&shy;ank.de</a>",
          "<a href='http://%65vil.net'>bank.de</a>"}) {
        const QString text = LinkWarning(link);
        EXPECT_TRUE(text.contains(QStringLiteral("bank.de")) && text.contains(QStringLiteral("evil.net"))) << link;
    }
    for (const char* link :
         {"<a href='http://evil.net/x'>Click here</a>", "<a href='http://evil.net/x'>readme.txt</a>",
          "<a href='https://login.bank.de/x'>www.bank.de</a>", "<a href='mailto:a@evil.net'>bank.de</a>",
          "<a href='http://evil.net/x'>ann@bank.de</a>", "<a href='http://evil.net/x'>Version 1.2</a>",
          "<a href='http://evil.net/x'>README.md</a>", "<a href='http://evil.net/x'>see setup.sh, run_it.py</a>",
          "<a href='http://evil.net/x'>main.rs</a>", "<a href='http://evil.net/x'>script.pl</a>",
          "<a href='http://evil.net/x'>photos.zip</a>", "<a href='http://evil.net/x'>see www.evil.net now</a>",
          "<a href='https://xn--mller-kva.de'>m&uuml;ller.de</a>", "<a href='http://user@bank.de/'>x</a>"}) {
        EXPECT_EQ(LinkWarning(link), QString()) << link;
    }
}

TEST(MessageWarnings, DomainsOfCountriesAreNoFiles) {
    for (const char* shown : {"allegro.pl", "www.bank.md", "bank.rs", "Allegro.pl", "www.readme.md"}) {
        EXPECT_FALSE(LinkWarning(QByteArray("<a href='http://evil.net/'>") + shown + "</a>").isEmpty()) << shown;
    }
}

TEST(MessageWarnings, LooksAtSixteenWordsOfALink) {
    const auto link = [](int before) {
        return LinkWarning("<a href='http://evil.net/'>" + QByteArray("a.b ").repeated(before) + "bank.de</a>");
    };
    EXPECT_FALSE(link(15).isEmpty());
    EXPECT_EQ(link(16), QString());
}

TEST(MessageWarnings, NamesNoMoreThanThreeLinks) {
    QByteArray page = "From: a@example.org\r\nContent-Type: text/html\r\n\r\n";
    for (int i = 0; i < 10; ++i) {
        page +=
            "<a href='http://evil.net'>bank" + QByteArray::number(i) + ".de</a><a href='http://evil.net'>bank0.de</a>";
    }
    EXPECT_EQ(WarningsOf(page).size(), 3U);
}

TEST(MessageWarnings, LinksOfAPageBehindAPlainText) {
    const QByteArray bytes = "From: a@example.org\r\nMIME-Version: 1.0\r\nContent-Type: multipart/alternative; "
                             "boundary=b\r\n\r\n--b\r\n\r\nhello\r\n--b\r\nContent-Type: text/html\r\n\r\n"
                             "<a href='http://evil.net'>bank.de</a>\r\n--b--\r\n";
    EXPECT_FALSE(WarningText(WarningKind::LinkText, bytes).isEmpty());
}

TEST(MessageWarnings, DomainsInLettersThatPassForOthers) {
    EXPECT_TRUE(DomainWarning("xn--80ak6aa92e.com").contains(QStringLiteral("apple.com"))); // all Cyrillic
    EXPECT_TRUE(DomainWarning("p\xD0\xB0ypal.com").contains(QStringLiteral("paypal.com"))); // one Cyrillic letter
    EXPECT_TRUE(
        DomainWarning("ban\xD0\xBA.com").contains(QStringLiteral("bank.com"))); // loosely alike, among Latin ones
    EXPECT_TRUE(DomainWarning("\xCE\xB3\xCE\xB9\xCE\xBD\xCE\xBF.com").contains(QStringLiteral("yivo.com"))); // Greek
    EXPECT_TRUE(DomainWarning("\xC9\xA1oogle.com").contains(QStringLiteral("google.com"))); // Latin script g
    EXPECT_FALSE(WarningText(WarningKind::LookAlikeDomain, "From: a@xn--80ak6aa92e.com\r\n\r\n").isEmpty());
}

TEST(MessageWarnings, LooksAtTenThousandAddressesOfAText) {
    const QByteArray bad = " http://xn--80ak6aa92e.com/";
    const QByteArray head = "From: a@example.org\r\n\r\n";
    const auto repeated = [](int count) { return QByteArray("http://a.example/ ").repeated(count); };
    EXPECT_FALSE(WarningText(WarningKind::LookAlikeDomain, head + repeated(9'999) + bad).isEmpty());
    EXPECT_EQ(WarningText(WarningKind::LookAlikeDomain, head + repeated(10'000) + bad), QString());
    EXPECT_FALSE(WarningText(WarningKind::LookAlikeDomain, head + "http://a.example/?to=" + bad.trimmed()).isEmpty());
    EXPECT_FALSE(WarningText(WarningKind::LookAlikeDomain, head + "://://:///" + bad).isEmpty());
}

TEST(MessageWarnings, DomainsInLettersOfALanguage) {
    for (const char* domain :
         {"m\xC3\xBCller.de", "xn--mller-kva.de", "\xD0\xBC\xD0\xBE\xD1\x81\xD0\xBA\xD0\xB2\xD0\xB0.\xD1\x80\xD1\x84",
          "\xD0\xB6\xD1\x83\xD1\x80\xD0\xBD\xD0\xB0\xD0\xBB.com", "\xE6\x97\xA5\xE6\x9C\xAC\xE3\x81\xAE.jp",
          "caf\xC3\xA9.fr", "bank.de", "192.0.2.1", "\xCF\x85\xCE\xB3\xCE\xB5\xCE\xB9\xCE\xB1.gr",
          "\xD0\xBD\xD0\xB5\xD1\x82.com", "\xCE\xB5\xCE\xBB\xCE\xBB\xCE\xAC\xCE\xB4\xCE\xB1.gr"}) {
        EXPECT_EQ(DomainWarning(domain), QString()) << domain;
    }
}

TEST(MessageWarnings, OwnServerHasFoundTheOriginFalse) {
    EXPECT_TRUE(Authentication("mx.home.example; spf=pass smtp.mailfrom=x; dmarc=fail (p=reject) header.from=bank.de")
                    .contains(QStringLiteral("dmarc=fail")));
    EXPECT_TRUE(
        Authentication("mx.home.example; spf=softfail smtp.mailfrom=a@b").contains(QStringLiteral("spf=softfail")));
    EXPECT_TRUE(
        Authentication("auth.home.example 1; dkim=fail (\"a;b\") header.d=x").contains(QStringLiteral("dkim=fail")));
    EXPECT_FALSE(Authentication("mx.home.example; none").isEmpty());
    EXPECT_FALSE(Authentication("mx.home.example; spf=none smtp.mailfrom=a").isEmpty());
}

TEST(MessageWarnings, ProofCountsForTheOrganizationOfTheSender) {
    for (const char* results :
         {"spf=fail smtp.mailfrom=example.org; dkim=pass header.d=evil.net", "spf=pass smtp.mailfrom=x@evil.net",
          "dkim=pass header.i=@evil.net; spf=none", "dkim = pass (1024 bits) header.d = evil.net"}) {
        EXPECT_FALSE(Authentication(QByteArray("mx.home.example; ") + results).isEmpty()) << results;
    }
    EXPECT_TRUE(
        Authentication("mx.home.example; spf=pass smtp.mailfrom=evil.net").contains(QStringLiteral("evil.net")));
    for (const char* results :
         {"spf=fail smtp.mailfrom=forwarder.example; dkim=pass header.d=mail.example.org",
          "spf=pass smtp.mailfrom=bounce@mail.example.org", "dkim=fail header.d=x.net; dkim=pass header.i=@example.org",
          "dkim=pass header.d=evil.net; dmarc=pass header.from=example.org", "auth=pass smtp.auth=ann",
          "spf=pass smtp.mailfrom=evil.net; auth=pass (LOGIN) smtp.auth=ann"}) {
        EXPECT_EQ(Authentication(QByteArray("mx.home.example; ") + results), QString()) << results;
    }
    EXPECT_FALSE(Authentication("mx.home.example; auth=fail smtp.auth=ann").isEmpty());
}

TEST(MessageWarnings, TheTopmostResultOfEachMethodDecides) {
    const QByteArray own =
        "Authentication-Results: mx.home.example; dmarc=fail\r\nReceived: from x by mx.home.example\r\n";
    const QByteArray forged = "Authentication-Results: mx.home.example; dmarc=pass\r\n";
    const QByteArray rest = "Received: from y by relay.far.example\r\nFrom: a@example.org\r\n\r\n";
    EXPECT_FALSE(WarningText(WarningKind::Authentication, own + forged + rest).isEmpty());
    EXPECT_EQ(WarningText(WarningKind::Authentication, forged + own + rest), QString());
    // Programs of one server may each write a field.
    EXPECT_EQ(
        WarningText(WarningKind::Authentication,
                    "Authentication-Results: mx.home.example; spf=fail\r\nAuthentication-Results: mx.home.example; "
                    "dkim=pass header.d=example.org\r\nReceived: from x by mx.home.example\r\n" +
                        rest),
        QString());
}

TEST(MessageWarnings, SenderWhoCallsItselfByIsNoReceivingHost) {
    const auto text = [](const QByteArray& from) {
        return WarningText(WarningKind::Authentication,
                           "Authentication-Results: mx.home.example; dmarc=fail\r\nReceived: from " + from +
                               " (x [192.0.2.1]) by mx.home.example with ESMTP; today\r\nFrom: "
                               "a@example.org\r\n\r\n");
    };
    EXPECT_FALSE(text("by").isEmpty());
    EXPECT_FALSE(text("bye.example").isEmpty());
}

TEST(MessageWarnings, OwnServerHasNothingAgainstIt) {
    EXPECT_EQ(Authentication("mx.home.example; dmarc=pass; spf=fail; dkim=pass"), QString());
    EXPECT_EQ(Authentication("mx.home.example; spf=fail; dkim=pass header.d=example.org"), QString());
    EXPECT_EQ(Authentication("mx.home.example; spf=pass"), QString());
    EXPECT_EQ(Authentication("mx.far.example; dmarc=fail"), QString()); // of whoever
    EXPECT_EQ(Authentication("mx.home.example; dmarc=fail", "other.example"), QString());
    // Below the trace of a foreign server stands what that one, or the sender, has written.
    EXPECT_EQ(WarningText(WarningKind::Authentication,
                          "Received: from x by mx.home.example\r\nReceived: from y by relay.far.example\r\n"
                          "Authentication-Results: mx.home.example; dmarc=fail\r\nFrom: a@example.org\r\n\r\n"),
              QString());
    EXPECT_FALSE(WarningText(WarningKind::Authentication,
                             "Received: from x by mx.home.example\r\nReceived: from y by in.home.example\r\n"
                             "Authentication-Results: in.home.example; dmarc=fail\r\nFrom: a@example.org\r\n\r\n")
                     .isEmpty());
}

TEST(MessageWarnings, AttachmentWhoseTypeAndNameDisagree) {
    const QByteArray program = WindowsProgram();
    const QByteArray ole("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
    for (const auto& [type, name, content] : std::initializer_list<std::tuple<const char*, const char*, QByteArray>>{
             {"application/pdf", "invoice.pdf", program},
             {"image/png", "invoice.pdf", "%PDF-1.4"},
             {"application/zip", "a.zip", "<html><body>"},
             {"image/jpeg", "photo.exe", "x"},
             {"application/octet-stream", "invoice.pdf", QByteArray("PK\x03\x04zip")},
             {"application/octet-stream", "invoice.pdf.exe", "x"},
             {"application/octet-stream", "invoice.pdf.exe. .", "x"},
             {"application/octet-stream", "photos.zip", ole},
             {"application/octet-stream", "invoice.pdf          .scr", "x"},
             {"application/octet-stream", "invoice\t\t\t\t\t.txt", "x"},
             {"application/octet-stream", "invoice\xC2\xA0\xC2\xA0\xC2\xA0\xC2\xA0\xC2\xA0.txt", "x"},
             {"application/octet-stream", "invoice\xE3\x80\x80 \xE3\x80\x80 \xE3\x80\x80.txt", "x"}}) {
        EXPECT_FALSE(WarningText(WarningKind::AttachmentType, Attached(type, name, content)).isEmpty()) << type << name;
    }
    for (const auto& [type, name, content] : std::initializer_list<std::tuple<const char*, const char*, QByteArray>>{
             {"application/pdf", "invoice.pdf", "%PDF-1.4"},
             {"application/octet-stream", "invoice.pdf", "%PDF-1.4"},
             {"image/jpeg", "photo.png", "\x89PNG\r\n"},
             {"application/msword", "a.doc", "{\\rtf1"},
             {"application/vnd.openxmlformats-officedocument.wordprocessingml.document", "a.docx", "PK\x03\x04"},
             {"application/vnd.openxmlformats-officedocument.wordprocessingml.document", "locked.docx", ole},
             {"application/octet-stream", "locked.xlsx", ole},
             {"text/plain", "notes.v1.2.txt", "MZ is no program"},
             {"text/plain", "notes.txt",
              "MZ is where the train ends, and this text is longer than the header of a program."},
             {"application/octet-stream", "four    blanks.txt", "x"},
             {"text/html", "page.html", "<html>"},
             {"image/svg+xml", "logo.svg", "<svg/>"},
             {"application/octet-stream", "backup.tar.gz", "\x1F\x8B"}}) {
        EXPECT_EQ(WarningText(WarningKind::AttachmentType, Attached(type, name, content)), QString()) << type << name;
    }
}

TEST(MessageWarnings, AttachmentThatRuns) {
    for (const char* name :
         {"a.exe", "a.SCR",          "a.js",         "a.vbs",  "a.lnk",     "a.iso",          "a.hta",
          "a.bat", "a.cmd",          "a.ps1",        "a.jar",  "a.msi",     "a.com",          "a.pif",
          "a.wsf", "a.docm",         "a.xlsm",       "a.exe.", "a.exe . .", "a.exe\xC2\xA0.", "a.vb",
          "a.mst", "a.shb",          "a.ws",         "a.iqy",  "a.slk",     "a.rdp",          "a.one",
          "a.py",  "a.appinstaller", "a.msixbundle", "a.svg",  "a.html",    "a.htm"}) {
        EXPECT_FALSE(
            WarningText(WarningKind::RunnableAttachment, Attached("application/octet-stream", name, "x")).isEmpty())
            << name;
    }
    for (const char* name : {"a.txt", "a.docx", "exe", "a.example", "a.pdf", "a.jpg", "a.exe.txt .", "a.ones"}) {
        EXPECT_EQ(WarningText(WarningKind::RunnableAttachment, Attached("application/octet-stream", name, "x")),
                  QString())
            << name;
    }
}

TEST(MessageWarnings, AttachmentThatBeginsAsProgramsDo) {
    const auto text = [](const QByteArray& content) {
        return WarningText(WarningKind::RunnableAttachment, Attached("application/octet-stream", "a.bin", content));
    };
    EXPECT_FALSE(text(WindowsProgram()).isEmpty());
    EXPECT_FALSE(text("MZ" + QByteArray(62, '\0')).isEmpty()); // one for DOS has no second header
    EXPECT_EQ(text("MZ" + QByteArray(61, '\0')), QString());
    EXPECT_EQ(text("MZ" + QByteArray(500, 'x')), QString());
}

TEST(MessageWarnings, AttachmentWithoutAName) {
    const QString text = WarningText(WarningKind::AttachmentType, Attached("application/pdf", "", WindowsProgram()));
    EXPECT_TRUE(text.startsWith(QStringLiteral("The attachment (without a name) is declared as")))
        << text.toStdString();
}
