#include "samples/Message.h"

#include "samples/Texts.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <array>

namespace quellbox::samples {

namespace {

constexpr qsizetype headerSize = 900;
constexpr qsizetype attachmentThreshold = 16384;
constexpr qsizetype smallestText = 120;

/// The Date fields lie in the weeks before this moment (2026-03-15 12:00 UTC): were they near the present, the same
/// seed would not give the same bytes.
constexpr qint64 lastDateSeconds = 1773576000;
constexpr qint64 dateSpanSeconds = qint64{14} * 24 * 3600;

Entity Multipart(Random& random, const QByteArray& subtype, const QList<Entity>& parts) {
    const QByteArray number = QByteArray::number(random.Next(), 16).toUpper().rightJustified(16, '0');
    return MultipartEntity(subtype, "----=_NextPart_" + number, parts);
}

TransferEncoding AnyEncoding(Random& random) {
    if (random.Chance(50)) {
        return TransferEncoding::EightBit;
    }
    return random.Chance(60) ? TransferEncoding::QuotedPrintable : TransferEncoding::Base64;
}

Entity Text(Random& random, bool spam, const QByteArray& subtype, qsizetype size) {
    const qsizetype wanted = qMax(size, smallestText);
    const TransferEncoding encoding = AnyEncoding(random);
    const qsizetype decoded = encoding == TransferEncoding::Base64 ? wanted * 57 / 78 : wanted;
    const QByteArray bytes = subtype == "html" ? HtmlPage(random, spam, decoded) : Paragraphs(random, spam, decoded);
    const QByteArray charset = random.Chance(50) ? "us-ascii" : "iso-8859-1";
    return TextEntity(subtype, charset, bytes, encoding);
}

Entity Attachment(Random& random, qsizetype size) {
    static constexpr std::array types{"application/octet-stream", "application/pdf", "application/zip", "image/jpeg"};
    static constexpr std::array foreignForms{NameForm::Extended, NameForm::Continued, NameForm::EncodedWord};
    const bool foreign = random.Chance(50);
    const NameForm form = foreign ? random.Pick(foreignForms) : NameForm::Plain;
    const QByteArray name = foreign ? ForeignFileName(random) : FileName(random);
    const QByteArray type = random.Pick(types);
    return AttachmentEntity(type, name, form, RandomBytes(random, qMax(size, smallestText) * 57 / 78));
}

Entity Alternative(Random& random, bool spam, qsizetype size) {
    return Multipart(random, "alternative",
                     {Text(random, spam, "plain", size / 3), Text(random, spam, "html", size * 2 / 3)});
}

Entity AttachedMessage(Random& random, qsizetype size) {
    const Entity text = Text(random, true, "plain", size);
    return MessageEntity({MakeHeader(random, text.header), text.body});
}

Entity WithAttachments(Random& random, bool spam, qsizetype size) {
    QList<Entity> parts{Text(random, spam, "plain", smallestText)};
    const qint64 count = random.Between(1, 3);
    for (qint64 index = 0; index < count; ++index) {
        parts += Attachment(random, (size - smallestText) / count);
    }
    return Multipart(random, "mixed", parts);
}

Entity Nested(Random& random, bool spam, qsizetype size) {
    const Entity related =
        Multipart(random, "related", {Alternative(random, spam, size / 2), Attachment(random, size / 4)});
    return Multipart(random, "mixed", {related, Attachment(random, size / 4)});
}

Entity Content(Random& random, bool spam, qsizetype size) {
    if (size > attachmentThreshold && random.Chance(85)) {
        return random.Chance(80) ? WithAttachments(random, spam, size) : Nested(random, spam, size);
    }
    const qint64 kind = random.Between(1, 100);
    if (kind <= 35) {
        return Text(random, spam, "plain", size);
    }
    if (kind <= 60) {
        return Text(random, spam, "html", size);
    }
    if (kind <= 85) {
        return Alternative(random, spam, size);
    }
    if (kind <= 93) {
        return WithAttachments(random, spam, size);
    }
    if (kind <= 97) {
        return Nested(random, spam, size);
    }
    return Multipart(random, "mixed", {Text(random, spam, "plain", smallestText), AttachedMessage(random, size)});
}

/// What the mail server and its filter write above a message.
QByteArray ServerFields(Random& random, const QByteArray& sender, const QByteArray& recipient, bool spam) {
    QByteArray fields = "x-sender: " + sender + "\r\nx-receiver: " + recipient + "\r\n";
    while (random.Chance(15)) {
        fields += "x-receiver: " + Recipient(random) + "\r\n";
    }
    const QByteArray host = QByteArray::number(random.Between(1, 254));
    fields += "Received: from " + sender.mid(sender.indexOf('@') + 1) + " ([192.0.2." + host +
              "]) by mail.example.com with SMTP;\r\n\tid " + QByteArray::number(random.Next(), 36) + "\r\n";
    const qint64 level = spam ? random.Between(5, 9) : random.Between(4, 6);
    const qint64 hundredths = random.Between(0, 999);
    const qint64 rated = random.Between(1, 100);
    if (rated <= 85) {
        fields += "X-SCL: " + QByteArray::number(level) + ' ' + QByteArray::number(level * 10 + hundredths / 100) +
                  '.' + QByteArray::number(hundredths % 100).rightJustified(2, '0') + "%\r\n";
    } else if (rated <= 95) {
        fields += "X-SMSMSE-SCL: " + QByteArray::number(level) + "\r\n";
    }
    return fields;
}

struct Heading {
    QByteArray subject;
    QByteArray sender;
};

Heading MakeHeading(Random& random, bool spam) {
    if (random.Chance(65)) {
        return {spam ? SpamSubject(random) : WantedSubject(random), '"' + PersonName(random) + '"'};
    }
    const ForeignText text = Foreign(random);
    const bool undeclared = random.Chance(20);
    const bool preferQ = random.Chance(50);
    return {undeclared ? text.subject : EncodedWord(text.charset, text.subject, preferQ),
            undeclared ? '"' + text.sender + '"' : EncodedWord(text.charset, text.sender, preferQ)};
}

QByteArray HeaderOf(Random& random, bool spam, const Heading& heading, const QByteArray& ownFields) {
    const QByteArray sender = spam ? SpamSender(random) : WantedSender(random);
    const QByteArray recipient = Recipient(random);
    const QDateTime date =
        QDateTime::fromSecsSinceEpoch(lastDateSeconds - random.Between(0, dateSpanSeconds), QTimeZone::utc());
    QByteArray header = ServerFields(random, sender, recipient, spam);
    // The visible sender of spam is seldom the one on the envelope.
    const QByteArray visibleSender = spam && random.Chance(50) ? SpamSender(random) : sender;
    header += "From: " + heading.sender + " <" + visibleSender + ">\r\n";
    if (!random.Chance(3)) {
        const bool named = random.Chance(40);
        const QByteArray name = PersonName(random);
        header += "To: " + (named ? '"' + name + "\" <" + recipient + '>' : recipient) + "\r\n";
    }
    if (!random.Chance(2)) {
        header += "Subject: " + heading.subject + "\r\n";
    }
    header +=
        "Date: " + QLocale::c().toString(date, QStringLiteral("ddd, d MMM yyyy hh:mm:ss")).toLatin1() + " +0000\r\n";
    header += "Message-ID: <" + QByteArray::number(random.Next(), 16) + '@' +
              visibleSender.mid(visibleSender.indexOf('@') + 1) + ">\r\nMIME-Version: 1.0\r\n";
    return header + ownFields;
}

/// A letter in another character set; its subject may be written without declaring that set.
Entity ForeignLetter(Random& random, bool spam) {
    const ForeignText text = Foreign(random);
    const bool preferQ = random.Chance(50);
    const Heading heading{EncodedWord(text.charset, text.subject, preferQ),
                          EncodedWord(text.charset, text.sender, preferQ)};
    const Entity body = TextEntity("plain", text.charset, text.body, AnyEncoding(random));
    return {HeaderOf(random, spam, heading, body.header), body.body};
}

} // namespace

QByteArray RandomBytes(Random& random, qsizetype size) {
    QByteArray bytes(size, '\0');
    quint64 value = 0;
    for (qsizetype index = 0; index < size; ++index) {
        value = index % 8 == 0 ? random.Next() : value >> 8;
        bytes[index] = static_cast<char>(value & 0xFFU);
    }
    return bytes;
}

QByteArray MakeHeader(Random& random, const QByteArray& ownFields) {
    return HeaderOf(random, true, MakeHeading(random, true), ownFields);
}

QByteArray MakeMessage(Random& random, qsizetype size) {
    const bool spam = random.Chance(85);
    if (size < 2048 && random.Chance(40)) {
        return ForeignLetter(random, spam).Bytes();
    }
    const Entity content = Content(random, spam, qMax(size - headerSize, smallestText));
    const Heading heading = MakeHeading(random, spam);
    QByteArray message = Entity{HeaderOf(random, spam, heading, content.header), content.body}.Bytes();
    if (random.Chance(4)) {
        message.replace("\r\n", "\n");
    }
    return message;
}

} // namespace quellbox::samples
