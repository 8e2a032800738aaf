#include "mail/LinkTarget.h"

#include "mail/OrganizationalDomain.h"
#include "mail/ShownWords.h"

#include <algorithm>

namespace quellbox {

namespace {

constexpr qsizetype longestLink = 4096;

bool IsEndOfHost(QChar character) {
    return character == u'/' || character == u'\\' || character == u'?' || character == u'#';
}

/// Behind the slashes of a scheme of the web, which may be backslashes; -1 for another scheme.
qsizetype BeginOfHost(const QString& address) {
    qsizetype at = 0;
    for (const char* scheme : {"http:", "https:", "ftp:"}) {
        if (address.startsWith(QLatin1String(scheme), Qt::CaseInsensitive)) {
            at = static_cast<qsizetype>(qstrlen(scheme));
        }
    }
    const qsizetype behindScheme = at;
    while (at < address.size() && (address[at] == u'/' || address[at] == u'\\')) {
        ++at;
    }
    return behindScheme > 0 || at >= 2 ? at : -1;
}

QString WithoutPort(const QString& host) {
    if (host.startsWith(u'[')) {
        return host.section(u']', 0, 0).sliced(1);
    }
    return host.section(u':', 0, 0);
}

} // namespace

LinkTarget ReadLinkTarget(const QString& address) {
    const QString text = address.trimmed().left(longestLink);
    const qsizetype begin = BeginOfHost(text);
    if (begin < 0) {
        return {};
    }
    const auto end = std::find_if(text.begin() + begin, text.end(), IsEndOfHost);
    const QString authority = text.sliced(begin, end - text.begin() - begin);
    const qsizetype at = authority.lastIndexOf(u'@');
    const QString host = QString::fromUtf8(QByteArray::fromPercentEncoding(authority.sliced(at + 1).toUtf8()));
    return {WithoutPort(host).toLower(), at < 0 ? QString() : authority.first(at)};
}

QString HostShownBy(const QString& text) {
    const QString shown = text.trimmed();
    if (shown.contains(u' ') || shown.contains(u'@') || IsKnownAsNoDomain(shown)) {
        return {};
    }
    QString host = ReadLinkTarget(shown).host;
    if (!host.isEmpty()) {
        return host;
    }
    const auto end = std::find_if(shown.begin(), shown.end(), IsEndOfHost);
    const QString domain = WithoutPort(shown.left(end - shown.begin())).toLower();
    return IsRegistrableDomain(domain) ? domain : QString();
}

} // namespace quellbox
