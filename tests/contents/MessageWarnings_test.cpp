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
             {"list-bounces@lists.club.example", "From: ann@bank.example\r\nSender: list-bounces@lists.club.example"},
             {"list-bounces@club.example", "From: ann@bank.example\r\nList-Id: Talk <talk.lists.club.example>"},
             {"SRS0=HHH=TT=bank.example=ann@forwarder.example", "From: ann@bank.example"},
             {"a@xn--mller-kva.example", "From: a@mail.m\xC3\xBCller.example"},
             {"x@b.example", "From: a@a.example, b@b.example"}}) {
        EXPECT_EQ(WarningText(WarningKind::EnvelopeSender, Sent(envelope, fields)), QString()) << envelope << fields;
    }
    EXPECT_EQ(WarningText(WarningKind::EnvelopeSender,
                          "X-Sender: a@two.example (Unverified)\r\n"
                          "From: b@two.example\r\n\r\n",
                          "imf"),
              QString());
}

TEST(MessageWarnings, ReplyToElsewhere) {
    EXPECT_FALSE(WarningText(WarningKind::ReplyTo, "From: boss@firm.example\r\nReply-To: boss@freemail.example\r\n\r\n")
                     .isEmpty());
    for (const char* fields : {"Reply-To: help@support.firm.example", "Reply-To:", "Subject: no such field",
                               "To: talk@list.example\r\nReply-To: Talk <talk@list.example>",
                               "List-Post: <mailto:talk@list.example>\r\nReply-To: other@list.example"}) {
        EXPECT_EQ(WarningText(WarningKind::ReplyTo, QByteArray("From: boss@firm.example\r\n") + fields + "\r\n\r\n"),
                  QString())
            << fields;
    }
}

TEST(MessageWarnings, NameThatShowsAnotherAddress) {
    for (const char* from : {"\"service@paypal.com\" <x@spam.example>", "\"PayPal.com Service\" <x@spam.example>",
                             "=?utf-8?q?=22ann=40bank.de=22?= <x@spam.example>", "www.bank.de <x@spam.example>"}) {
        EXPECT_FALSE(WarningText(WarningKind::DisplayName, QByteArray("From: ") + from + "\r\n\r\n").isEmpty()) << from;
    }
    for (const char* from :
         {"\"ann@bank.de\" <ann@bank.de>", "Amazon.de <news@mail.amazon.de>", "Dr. A. Smith <x@y.example>",
          "J.R.Tolkien <x@y.example>", "x@y.example", "\"Ann @ work\" <x@y.example>", "v1.2 release <x@y.example>"}) {
        EXPECT_EQ(WarningText(WarningKind::DisplayName, QByteArray("From: ") + from + "\r\n\r\n"), QString()) << from;
    }
}

TEST(MessageWarnings, LinkThatShowsAnotherHost) {
    for (const char* link :
         {"<a href='http://evil.net/x'>www.bank.de</a>", "<a href='http://evil.net'>https://bank.de/login</a>",
          "<a href='//evil.net/'>bank.de/login</a>", "<a href='http://www.bank.de@evil.net/'>Log in</a>",
          "<a href='http:\\\\evil.net\\www.bank.de'>bank.de</a>", "<a href='http://%65vil.net'>bank.de</a>"}) {
        const QString text = LinkWarning(link);
        EXPECT_TRUE(text.contains(QStringLiteral("bank.de")) && text.contains(QStringLiteral("evil.net"))) << link;
    }
    for (const char* link :
         {"<a href='http://evil.net/x'>Click here</a>", "<a href='http://evil.net/x'>readme.txt</a>",
          "<a href='https://login.bank.de/x'>www.bank.de</a>", "<a href='mailto:a@evil.net'>bank.de</a>",
          "<a href='http://evil.net/x'>ann@bank.de</a>", "<a href='http://evil.net/x'>Version 1.2</a>",
          "<a href='https://xn--mller-kva.de'>m&uuml;ller.de</a>", "<a href='http://user@bank.de/'>x</a>"}) {
        EXPECT_EQ(LinkWarning(link), QString()) << link;
    }
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
          "caf\xC3\xA9.fr", "bank.de", "192.0.2.1", "\xCE\xB5\xCE\xBB\xCE\xBB\xCE\xAC\xCE\xB4\xCE\xB1.gr"}) {
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

TEST(MessageWarnings, OwnServerHasNothingAgainstIt) {
    EXPECT_EQ(Authentication("mx.home.example; dmarc=pass; spf=fail; dkim=pass"), QString());
    EXPECT_EQ(Authentication("mx.home.example; spf=fail; dkim=pass header.d=x"), QString());
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
    const QByteArray program = "MZ" + QByteArray(200, '\0');
    for (const auto& [type, name, content] : std::initializer_list<std::tuple<const char*, const char*, QByteArray>>{
             {"application/pdf", "invoice.pdf", program},
             {"image/png", "invoice.pdf", "%PDF-1.4"},
             {"application/zip", "a.zip", "<html><body>"},
             {"image/jpeg", "photo.exe", "x"},
             {"application/octet-stream", "invoice.pdf", QByteArray("PK\x03\x04zip")},
             {"application/octet-stream", "invoice.pdf.exe", "x"},
             {"application/octet-stream", "invoice.pdf          .scr", "x"}}) {
        EXPECT_FALSE(WarningText(WarningKind::AttachmentType, Attached(type, name, content)).isEmpty()) << type << name;
    }
    for (const auto& [type, name, content] : std::initializer_list<std::tuple<const char*, const char*, QByteArray>>{
             {"application/pdf", "invoice.pdf", "%PDF-1.4"},
             {"application/octet-stream", "invoice.pdf", "%PDF-1.4"},
             {"image/jpeg", "photo.png", "\x89PNG\r\n"},
             {"application/msword", "a.doc", "{\\rtf1"},
             {"application/vnd.openxmlformats-officedocument.wordprocessingml.document", "a.docx", "PK\x03\x04"},
             {"text/plain", "notes.v1.2.txt", "MZ is no program"},
             {"application/octet-stream", "backup.tar.gz", "\x1F\x8B"}}) {
        EXPECT_EQ(WarningText(WarningKind::AttachmentType, Attached(type, name, content)), QString()) << type << name;
    }
}

TEST(MessageWarnings, AttachmentThatRuns) {
    for (const char* name : {"a.exe", "a.SCR", "a.js", "a.vbs", "a.lnk", "a.iso", "a.hta", "a.bat", "a.cmd", "a.ps1",
                             "a.jar", "a.msi", "a.com", "a.pif", "a.wsf", "a.docm", "a.xlsm", "a.exe."}) {
        EXPECT_FALSE(
            WarningText(WarningKind::RunnableAttachment, Attached("application/octet-stream", name, "x")).isEmpty())
            << name;
    }
    for (const char* name : {"a.txt", "a.docx", "exe", "a.example", "a.pdf", "a.jpg"}) {
        EXPECT_EQ(WarningText(WarningKind::RunnableAttachment, Attached("application/octet-stream", name, "x")),
                  QString())
            << name;
    }
}
