#include "mail/PageBase.h"

#include <algorithm>

namespace quellbox {

namespace {

constexpr qsizetype longestTarget = 8192;
constexpr qsizetype longestBase = 2000;

/// The text of an attribute that is an address, its beginning.
QString AddressOf(QByteArrayView value, qsizetype longest) {
    value = value.trimmed();
    QString address = QString::fromUtf8(value.first(std::min(value.size(), longest)));
    address.removeIf([](QChar character) { return character == u'\n' || character == u'\r' || character == u'\t'; });
    return address;
}

/// The scheme that an address begins with, in lower case and with its colon; empty where there is none.
QString SchemeOf(const QString& address) {
    const qsizetype colon = address.indexOf(u':');
    const auto isOfScheme = [](QChar c) {
        return c.unicode() < 0x80 && (c.isLetterOrNumber() || c == u'+' || c == u'-' || c == u'.');
    };
    const bool isScheme =
        colon > 0 && address[0].isLetter() && std::all_of(address.begin(), address.begin() + colon, isOfScheme);
    return isScheme ? address.first(colon + 1).toLower() : QString();
}

bool IsOfWeb(const QString& scheme) {
    return scheme == QLatin1String("http:") || scheme == QLatin1String("https:") || scheme == QLatin1String("ftp:");
}

/// The address with slashes for its backslashes, up to its query.
QString WithSlashes(QString address) {
    const auto isEnd = [](QChar c) { return c == u'?' || c == u'#'; };
    std::replace(address.begin(), std::find_if(address.begin(), address.end(), isEnd), QChar(u'\\'), QChar(u'/'));
    return address;
}

qsizetype CountOfSlashes(const QString& address) {
    const auto end = std::find_if(address.begin(), address.end(), [](QChar c) { return c != u'/'; });
    return end - address.begin();
}

} // namespace

void PageBase::Set(QByteArrayView href) {
    if (isSet_) {
        return;
    }
    isSet_ = true;
    const QString address = AddressOf(href, longestBase);
    const QString scheme = SchemeOf(address);
    const QString rest = WithSlashes(address.sliced(scheme.size()));
    const qsizetype slashes = CountOfSlashes(rest);
    if (!(IsOfWeb(scheme) || (scheme.isEmpty() && slashes >= 2))) {
        return;
    }
    const QString place = rest.sliced(slashes).section(u'#', 0, 0).section(u'?', 0, 0);
    scheme_ = scheme;
    origin_ = scheme + QLatin1String("//") + place.section(u'/', 0, 0);
    page_ = scheme + QLatin1String("//") + place;
    const qsizetype slash = page_.lastIndexOf(u'/');
    folder_ = slash < origin_.size() ? origin_ + u'/' : page_.first(slash + 1);
}

QString PageBase::Resolve(QByteArrayView value) const {
    QString target = AddressOf(value, longestTarget);
    if (target.startsWith(u'#')) {
        return {};
    }
    const QString scheme = SchemeOf(target);
    if (target.isEmpty() || origin_.isEmpty() || (!scheme.isEmpty() && scheme != scheme_)) {
        return target;
    }
    // Of the scheme of the base, an address without slashes is a relative one.
    const QString rest = WithSlashes(target.sliced(scheme.size()));
    const qsizetype slashes = CountOfSlashes(rest);
    if (slashes >= 2) {
        return scheme_ + QLatin1String("//") + rest.sliced(slashes);
    }
    if (slashes == 1) {
        return origin_ + rest;
    }
    return (rest.startsWith(u'?') ? page_ : folder_) + rest;
}

} // namespace quellbox
