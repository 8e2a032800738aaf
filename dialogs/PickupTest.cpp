#include "dialogs/PickupTest.h"

#include "mail/DisplayText.h"
#include "platform/AnsiText.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>
#include <QStringList>

namespace quellbox {

namespace {

/// Base64 in lines of the length that RFC 2045, section 6.8, allows.
QByteArray InLines(const QByteArray& base64) {
    constexpr qsizetype length = 76;
    QByteArray lines;
    for (qsizetype start = 0; start < base64.size(); start += length) {
        lines += base64.mid(start, length) + "\r\n";
    }
    return lines;
}

/// The test message as the record has it.
MessageRow TestRow() {
    return {QStringLiteral("quellbox.eml"), -1, 0, {}};
}

} // namespace

bool IsPickupSetUp(const Folder& pickupDir, const Folder& programDir) {
    return !pickupDir.Text().startsWith(programDir.Text(), Qt::CaseSensitive);
}

QString GeneralDate(const QDateTime& moment, const QLocale& locale) {
    QString text = locale.toString(moment.date(), QLocale::ShortFormat);
    if (moment.time().msecsSinceStartOfDay() >= 1000) {
        // With the date, so that a time zone in the format is that of the moment.
        text += QLatin1Char(' ') + locale.toString(moment, locale.timeFormat(QLocale::LongFormat));
    }
    for (const char16_t blank : {u'\u00A0', u'\u2009', u'\u202F'}) {
        text.replace(QChar(blank), QLatin1Char(' '));
    }
    return text;
}

QString PickupTestQuestion() {
    return QCoreApplication::translate("quellbox", "OK to send test message to postmaster?") +
           QStringLiteral("\r\n\r\n") +
           QCoreApplication::translate("quellbox", "This will verify the pickup directory setup.");
}

QString PickupTestPath(const QString& pickupDir) {
    return pickupDir + SeparatorOf(pickupDir) + QStringLiteral("quellbox.eml");
}

// The message is not translated: it goes to whoever reads the postmaster's mail.
QByteArray PickupTestMessage(const QString& userName, const QString& pickupDir, const QString& moment) {
    const QStringList lines = {
        QStringLiteral("From: \"Quellbox\" <postmaster>"),
        QStringLiteral("TO: <postmaster>"),
        QStringLiteral("Subject: ") + userName + QStringLiteral(" is testing the Exchange pickup folder"),
        {},
        QStringLiteral("Testing pickup folder: ") + pickupDir + QStringLiteral(" at ") + moment,
        {},
        QStringLiteral("If you can see this message, Quellbox has been set up correctly to deliver unblocked messages "
                       "back to the Exchange server."),
        {},
        QStringLiteral("Kind regards, ") + userName,
        {},
    };
    return AnsiText(lines.join(QStringLiteral("\r\n")));
}

QString TransmissionTestQuestion(const QString& target) {
    return QCoreApplication::translate("quellbox", "OK to send test message to postmaster?") +
           QStringLiteral("\r\n\r\n") +
           QCoreApplication::translate("quellbox", "This will verify the delivery by %1.")
               .arg(CleanseForDisplay(target));
}

QByteArray TransmissionTestMessage(const QString& userName, const QString& target, const QDateTime& moment) {
    const QString user = CleanseForDisplay(userName);
    const QStringList lines = {
        QStringLiteral("Date: ") + QLocale::c().toString(moment.toUTC(), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss")) +
            QStringLiteral(" +0000"),
        QStringLiteral("From: \"Quellbox\" <postmaster>"),
        QStringLiteral("To: <postmaster>"),
        QStringLiteral("Subject: Quellbox is testing the delivery of unblocked messages"),
        QStringLiteral("MIME-Version: 1.0"),
        QStringLiteral("Content-Type: text/plain; charset=utf-8"),
        QStringLiteral("Content-Transfer-Encoding: base64"),
        {},
    };
    const QString text =
        QStringLiteral("If you can see this message, Quellbox can deliver unblocked messages by %1.\r\n\r\n"
                       "Kind regards, %2\r\n")
            .arg(CleanseForDisplay(target), user);
    return lines.join(QStringLiteral("\r\n")).toLatin1() + "\r\n" + InLines(text.toUtf8().toBase64());
}

void WritePickupTest(FileSystem& files, const QString& userName, const QString& pickupDir, const QString& moment) {
    files.WriteWhole(PickupTestPath(pickupDir), PickupTestMessage(userName, pickupDir, moment));
}

std::optional<QString> TryPickupTest(FileSystem& files, const QString& userName, const QString& pickupDir,
                                     const QString& moment, ActionRecord& record) {
    try {
        WritePickupTest(files, userName, pickupDir, moment);
        record.Take({TestRow(), std::nullopt});
        return std::nullopt;
    } catch (const RuntimeError& error) {
        record.Take({TestRow(), FileFailure(PickupTestPath(pickupDir), error.Text())});
        return error.Text();
    }
}

// Mail servers know the postmaster without a domain (RFC 5321, section 4.5.1).
std::optional<QString> TryTransmissionTest(Transmitter& transmitter, const QByteArray& message, ActionRecord& record,
                                           const Transmitter::GoOn& goOn, QString& path) {
    const DeliveryOutcome outcome = transmitter.Transmit(
        [&message] {
            return OutgoingMessage{{{}, {"postmaster"}}, message, TestRow().Key()};
        },
        goOn);
    if (outcome.fate == DeliveryFate::Delivered) {
        path = outcome.path;
        record.Take({TestRow(), std::nullopt, 0, outcome.words, path.isEmpty()});
        return std::nullopt;
    }
    record.Take({TestRow(), FileFailure(transmitter.Target(), outcome.words), 0, {}, true});
    return outcome.words;
}

} // namespace quellbox
