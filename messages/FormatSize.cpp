#include "messages/FormatSize.h"

#include <QCoreApplication>

#include <array>

namespace quellbox {

namespace {

struct Unit {
    qint64 bytes;
    int decimals;
    qint64 scale; // ten to the power of `decimals`
    const char* text;
};

constexpr std::array<Unit, 3> units{{{1'000'000'000, 3, 1000, QT_TRANSLATE_NOOP("quellbox", "%1 GB")},
                                     {1'000'000, 2, 100, QT_TRANSLATE_NOOP("quellbox", "%1 MB")},
                                     {1'000, 1, 10, QT_TRANSLATE_NOOP("quellbox", "%1 KB")}}};

} // namespace

QString FormatSize(qint64 bytes, const QLocale& locale) {
    for (const Unit& unit : units) {
        if (bytes <= unit.bytes) {
            continue;
        }
        // Rounding in integers gives halves away from zero, which binary fractions would not.
        const qint64 divisor = unit.bytes / unit.scale;
        const qint64 rounded = (bytes + divisor / 2) / divisor;
        const QString fraction = QStringLiteral("%1").arg(rounded % unit.scale, unit.decimals, 10, QLatin1Char('0'));
        const QString number = QString::number(rounded / unit.scale) + locale.decimalPoint() + fraction;
        return QCoreApplication::translate("quellbox", unit.text).arg(number);
    }
    return QCoreApplication::translate("quellbox", "%1 bytes").arg(bytes);
}

} // namespace quellbox
