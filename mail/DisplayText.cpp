#include "mail/DisplayText.h"

#include <algorithm>

namespace quellbox {

namespace {

bool IsSpace(char16_t unit) {
    return (unit >= u'\t' && unit <= u'\r') || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

bool IsRemoved(char16_t unit) {
    const bool control = unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
    const bool direction = (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
    return control || direction;
}

} // namespace

QString CleanseForDisplay(QString text) {
    const auto touched = [](QChar unit) { return IsSpace(unit.unicode()) || IsRemoved(unit.unicode()); };
    // Nearly every text is clean already; it is then passed on without a copy.
    const auto first = std::find_if(text.cbegin(), text.cend(), touched);
    if (first != text.cend()) {
        const auto clean = first - text.cbegin(); // before begin(), which moves a shared text elsewhere
        auto out = text.begin() + clean;
        for (auto in = out; in != text.end(); ++in) {
            if (IsSpace(in->unicode()))
                *out++ = u' ';
            else if (!IsRemoved(in->unicode()))
                *out++ = *in;
        }
        text.truncate(out - text.begin());
    }
    return std::move(text).trimmed();
}

QString CleanseLines(QString text) {
    const auto stays = [](QChar unit) { return unit == u'\n' || unit == u'\t' || !IsRemoved(unit.unicode()); };
    const auto first = std::find_if_not(text.cbegin(), text.cend(), stays);
    if (first == text.cend()) {
        return text;
    }
    const auto clean = first - text.cbegin(); // before begin(), as above
    auto out = text.begin() + clean;
    const auto end = text.end();
    for (auto in = out; in != end; ++in) {
        const bool isLineEnd = *in == u'\r' && (in + 1 == end || in[1] != u'\n');
        if (isLineEnd || stays(*in)) {
            *out++ = isLineEnd ? QChar(u'\n') : *in;
        }
    }
    text.truncate(out - text.begin());
    return text;
}

QString EscapeBrackets(const QString& text) {
    if (!text.contains(u'[')) {
        return text;
    }
    QString escaped;
    escaped.reserve(text.size() + text.count(u'['));
    for (const QChar character : text) {
        if (character == u'[') {
            escaped += u'\\';
        }
        escaped += character;
    }
    return escaped;
}

QString WindowTitle(const QString& text) {
    return CleanseForDisplay(text).replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

QString ShownText(const QString& text) {
    return text.size() <= longestShownText ? text : text.left(longestShownText) + QChar(0x2026);
}

QString WithLineFeeds(QString text) {
    return text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

} // namespace quellbox
