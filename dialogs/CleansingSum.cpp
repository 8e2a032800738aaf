#include "dialogs/CleansingSum.h"

#include "archive/DayWindow.h"
#include "messages/FormatSize.h"

#include <QCoreApplication>
#include <QLocale>

namespace quellbox {

CleansingSum SumOfCleansing(const DayTotals& messages, qint16 days, QDate today) {
    CleansingSum sum;
    if (days < 0) {
        return sum;
    }
    const QString window = QString::number(days);
    for (const auto& [day, total] : messages) {
        if (days != 0 && IsRecentDay(window, day, today)) {
            continue;
        }
        sum.oldest = sum.count == 0 ? day : sum.oldest;
        sum.newest = day;
        sum.count += total.count;
        sum.bytes += total.bytes;
    }
    return sum;
}

QString CleansingSumText(const CleansingSum& sum) {
    if (sum.count == 0) {
        return QCoreApplication::translate("quellbox", "Nothing would be removed.");
    }
    const QLocale locale;
    const QString size = FormatSize(sum.bytes, locale);
    const QString oldest = locale.toString(sum.oldest, QLocale::ShortFormat);
    const QString newest = locale.toString(sum.newest, QLocale::ShortFormat);
    if (sum.count == 1) {
        return QCoreApplication::translate("quellbox", "One message (%1) of %2 would be removed.").arg(size, oldest);
    }
    if (oldest == newest) {
        return QCoreApplication::translate("quellbox", "%Ln messages (%1) of %2 would be removed.", nullptr, sum.count)
            .arg(size, oldest);
    }
    return QCoreApplication::translate("quellbox", "%Ln messages (%1) from %2 to %3 would be removed.", nullptr,
                                       sum.count)
        .arg(size, oldest, newest);
}

} // namespace quellbox
