#include "mail/AuthenticationResults.h"

#include "mail/HeaderDecoder.h"
#include "mail/OrganizationalDomain.h"

#include <QStringList>

#include <algorithm>

namespace quellbox {

namespace {

/// The text without comments in brackets, which may hold each other, and without the quotes of quoted strings.
QString WithoutComments(const QString& value) {
    QString text;
    int depth = 0;
    bool isQuoted = false;
    for (qsizetype at = 0; at < value.size(); ++at) {
        const QChar character = value[at];
        if (character == u'\\') {
            ++at;
        } else if (character == u'"' && depth == 0) {
            isQuoted = !isQuoted;
        } else if (character == u'(' && !isQuoted) {
            ++depth;
        } else if (character == u')' && !isQuoted && depth > 0) {
            --depth;
            text += u' ';
        } else if (depth == 0) {
            text += isQuoted && character == u';' ? QChar(u' ') : character;
        }
    }
    return text;
}

bool IsField(const RawField& field, const char* name) {
    return field.name.compare(name, Qt::CaseInsensitive) == 0;
}

bool IsOfHost(const QString& server, const QString& host) {
    return server.compare(host, Qt::CaseInsensitive) == 0 ||
           (host.contains(u'.') && AreOfOneOrganization(server, host));
}

} // namespace

AuthenticationReport ReadAuthenticationResults(const QString& value) {
    constexpr qsizetype mostResults = 50;
    const QStringList parts = WithoutComments(value).split(u';');
    AuthenticationReport report{parts.first().simplified().section(u' ', 0, 0), {}};
    for (qsizetype i = 1; i < std::min(parts.size(), mostResults); ++i) {
        const qsizetype equals = parts[i].indexOf(u'=');
        if (equals < 0) {
            continue;
        }
        const QString method = parts[i].first(equals).simplified().section(u'/', 0, 0).trimmed().toLower();
        const QString result = parts[i].sliced(equals + 1).simplified().section(u' ', 0, 0).toLower();
        report.results.push_back({method, result});
    }
    return report;
}

QString ReceivingHost(const QString& value) {
    const QStringList words = WithoutComments(value).simplified().split(u' ');
    const qsizetype by = words.indexOf(QStringLiteral("by"));
    if (by < 0 || by + 1 >= words.size()) {
        return {};
    }
    QString host = words[by + 1];
    return host.endsWith(u';') ? host.chopped(1) : host;
}

std::vector<AuthenticationReport> ReportsOfOwnServer(const RawFieldList& fields) {
    const auto topmost =
        std::find_if(fields.begin(), fields.end(), [](const RawField& field) { return IsField(field, "Received"); });
    const QString host = topmost == fields.end() ? QString() : ReceivingHost(DecodeHeaderValue(topmost->value));
    std::vector<AuthenticationReport> reports;
    if (host.isEmpty()) {
        return reports;
    }
    for (const RawField& field : fields) {
        if (IsField(field, "Received") && !IsOfHost(ReceivingHost(DecodeHeaderValue(field.value)), host)) {
            break;
        }
        if (IsField(field, "Authentication-Results")) {
            AuthenticationReport report = ReadAuthenticationResults(DecodeHeaderValue(field.value));
            if (IsOfHost(report.server, host)) {
                reports.push_back(std::move(report));
            }
        }
    }
    return reports;
}

} // namespace quellbox
