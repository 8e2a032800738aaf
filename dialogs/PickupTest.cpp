#include "dialogs/PickupTest.h"

#include "platform/AnsiText.h"

#include <QCoreApplication>
#include <QStringList>

namespace quellbox {

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

void WritePickupTest(FileSystem& files, const QString& userName, const QString& pickupDir, const QString& moment) {
    files.WriteWhole(PickupTestPath(pickupDir), PickupTestMessage(userName, pickupDir, moment));
}

} // namespace quellbox
