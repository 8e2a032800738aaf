#include "mail/OrganizationalDomain.h"

#include <QUrl>

#include <libpsl.h>

namespace quellbox {

QString AsciiDomain(const QString& domain) {
    constexpr qsizetype longest = 1000;
    QString trimmed = domain.trimmed().left(longest);
    while (trimmed.endsWith(u'.')) {
        trimmed.chop(1);
    }
    return QString::fromLatin1(QUrl::toAce(trimmed, QUrl::IgnoreIDNWhitelist)).toLower();
}

QString ReadableDomain(const QString& domain) {
    const QString readable = QUrl::fromAce(AsciiDomain(domain).toLatin1(), QUrl::IgnoreIDNWhitelist);
    return readable.isEmpty() ? domain : readable;
}

QString OrganizationalDomain(const QString& domain) {
    const QString ascii = AsciiDomain(domain);
    const bool isNumber = !ascii.isEmpty() && (ascii.back().isDigit() || ascii.contains(u':'));
    // The list that is a part of the library: no file is read, and the answer is the same everywhere.
    const QByteArray bytes = ascii.toLatin1();
    const char* registered = isNumber ? nullptr : psl_registrable_domain(psl_builtin(), bytes.constData());
    return registered == nullptr ? ascii : QString::fromLatin1(registered);
}

bool AreOfOneOrganization(const QString& left, const QString& right) {
    const QString organization = OrganizationalDomain(left);
    return !organization.isEmpty() && organization == OrganizationalDomain(right);
}

bool IsRegistrableDomain(const QString& text) {
    const QByteArray ascii = AsciiDomain(text).toLatin1();
    const qsizetype dot = ascii.lastIndexOf('.');
    return dot > 0 && !ascii.startsWith('.') && !ascii.contains("..") &&
           psl_is_public_suffix2(psl_builtin(), ascii.constData() + dot + 1, PSL_TYPE_ANY | PSL_TYPE_NO_STAR_RULE) !=
               0 &&
           psl_is_public_suffix2(psl_builtin(), ascii.constData(), PSL_TYPE_ANY | PSL_TYPE_NO_STAR_RULE) == 0;
}

} // namespace quellbox
