#include "settings/TextConversion.h"

#include "mail/AsciiDigit.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <cmath>
#include <limits>

namespace quellbox {
namespace {

bool IsBlank(QChar character) {
    return character == QLatin1Char(' ') || (character >= QLatin1Char('\t') && character <= QLatin1Char('\r'));
}

qsizetype SkipDigits(QStringView text, qsizetype at) {
    while (at < text.size() && IsAsciiDigit(text[at])) {
        ++at;
    }
    return at;
}

qsizetype SkipSign(QStringView text, qsizetype at) {
    const bool isSign = at < text.size() && (text[at] == QLatin1Char('+') || text[at] == QLatin1Char('-'));
    return isSign ? at + 1 : at;
}

qsizetype SkipBlanks(QStringView text) {
    qsizetype at = 0;
    while (at < text.size() && IsBlank(text[at])) {
        ++at;
    }
    return at;
}

/// The length of the longest prefix that forms a decimal number; 0 when there is none.
qsizetype NumberLength(QStringView text) {
    const qsizetype start = SkipSign(text, 0);
    qsizetype end = SkipDigits(text, start);
    qsizetype digits = end - start;
    if (end < text.size() && text[end] == QLatin1Char('.')) {
        const qsizetype fraction = end + 1;
        end = SkipDigits(text, fraction);
        digits += end - fraction;
    }
    if (digits == 0) {
        return 0;
    }
    if (end < text.size() && text[end].toLower() == QLatin1Char('e')) {
        const qsizetype exponent = SkipSign(text, end + 1);
        const qsizetype exponentEnd = SkipDigits(text, exponent);
        // An "e" without digits after it is no exponent; the number then ends before it.
        if (exponentEnd > exponent) {
            end = exponentEnd;
        }
    }
    return end;
}

template <typename Integer>
Integer ToInteger(const QString& text) {
    using Limits = std::numeric_limits<Integer>;
    const double rounded = LeadingWholeNumber(text);
    if (rounded < double(Limits::min()) || rounded > double(Limits::max())) {
        throw OverflowError(QCoreApplication::translate("quellbox", "The number \"%1\" is too large or too small. "
                                                                    "Enter a number from %2 to %3.")
                                .arg(text, QString::number(Limits::min()), QString::number(Limits::max())));
    }
    return static_cast<Integer>(rounded);
}

} // namespace

double LeadingNumber(const QString& text) {
    const QStringView number = QStringView(text).mid(SkipBlanks(text));
    // The result is wanted even where the conversion reports a failure: it is infinite for a number beyond a double.
    return number.left(NumberLength(number)).toDouble();
}

double LeadingWholeNumber(const QString& text) {
    // The default rounding mode of the processor takes halves to the even neighbour.
    return std::nearbyint(LeadingNumber(text));
}

qint16 ToInteger16(const QString& text) {
    return ToInteger<qint16>(text);
}

qint32 ToInteger32(const QString& text) {
    return ToInteger<qint32>(text);
}

bool ToBoolean(const QString& text) {
    const QString word = text.trimmed();
    if (word.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) {
        return true;
    }
    if (word.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) {
        return false;
    }
    if (word.isEmpty() || NumberLength(word) != word.size()) {
        throw TypeMismatchError(QCoreApplication::translate("quellbox",
                                                            "The text \"%1\" is neither True nor False nor a number. "
                                                            "Enter True or False.")
                                    .arg(text));
    }
    return LeadingNumber(word) != 0.0;
}

QString FromBoolean(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

} // namespace quellbox
