#include "mail/AuthenticationResults.h"

#include "mail/HeaderDecoder.h"
#include "mail/OrganizationalDomain.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <iterator>

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

/// The value of a property such as "header.d" in what follows a method; empty where it is not there.
QString PropertyValue(const QStringList& words, QLatin1String name) {
    const auto found = std::find_if(words.begin(), words.end(), [name](const QString& word) {
        return word.startsWith(name, Qt::CaseInsensitive) && word.size() > name.size() && word[name.size()] == u'=';
    });
    return found == words.end() ? QString() : found->sliced(name.size() + 1);
}

/// The domain that a result is about.
QString CheckedDomain(const QStringList& words) {
    for (const char* name : {"header.d", "header.i", "smtp.mailfrom", "smtp.mail"}) {
        const QString value = PropertyValue(words, QLatin1String(name));
        if (!value.isEmpty()) {
            return value.sliced(value.lastIndexOf(u'@') + 1).toLower();
        }
    }
    return {};
}

/// One of the pieces between semicolons, as "spf/1 = pass smtp.mailfrom=a@example.org"; without a method where it is
/// none.
AuthenticationResult ReadResult(const QString& piece) {
    static const QRegularExpression blanksAroundEquals(QStringLiteral("\\s*=\\s*"));
    constexpr qsizetype longest = 2000;
    QString text = piece.left(longest).simplified();
    text.replace(blanksAroundEquals, QStringLiteral("="));
    const QStringList words = text.split(u' ');
    const qsizetype equals = words.first().indexOf(u'=');
    if (equals < 0) {
        return {};
    }
    const QString method = words.first().first(equals).section(u'/', 0, 0).toLower();
    return {method, words.first().sliced(equals + 1).toLower(), CheckedDomain(words)};
}

bool HasMethod(const AuthenticationReport& report, const QString& method) {
    return std::any_of(report.results.begin(), report.results.end(),
                       [&method](const AuthenticationResult& each) { return each.method == method; });
}

/// Adds the results of the methods that no field above has.
void AddReport(const AuthenticationReport& lower, AuthenticationReport& all) {
    all.server = all.server.isEmpty() ? lower.server : all.server;
    const AuthenticationReport above = all;
    std::copy_if(lower.results.begin(), lower.results.end(), std::back_inserter(all.results),
                 [&above](const AuthenticationResult& each) { return !HasMethod(above, each.method); });
}

} // namespace

AuthenticationReport ReadAuthenticationResults(const QString& value) {
    constexpr qsizetype mostResults = 50;
    const QStringList pieces = WithoutComments(value).split(u';');
    AuthenticationReport report{pieces.first().simplified().section(u' ', 0, 0), {}};
    for (qsizetype i = 1; i < std::min(pieces.size(), mostResults); ++i) {
        AuthenticationResult result = ReadResult(pieces[i]);
        if (!result.method.isEmpty()) {
            report.results.push_back(std::move(result));
        }
    }
    return report;
}

QString ReceivingHost(const QString& value) {
    const QStringList words = WithoutComments(value).simplified().split(u' ');
    const bool hasFrom = words.first().compare(QLatin1String("from"), Qt::CaseInsensitive) == 0;
    const qsizetype by = words.indexOf(QStringLiteral("by"), hasFrom ? 2 : 0);
    if (by < 0 || by + 1 >= words.size()) {
        return {};
    }
    const QString& host = words[by + 1];
    return host.endsWith(u';') ? host.chopped(1) : host;
}

AuthenticationReport ReportOfOwnServer(const RawFieldList& fields) {
    const auto topmost =
        std::find_if(fields.begin(), fields.end(), [](const RawField& field) { return IsField(field, "Received"); });
    const QString host = topmost == fields.end() ? QString() : ReceivingHost(DecodeHeaderValue(topmost->value));
    AuthenticationReport all;
    if (host.isEmpty()) {
        return all;
    }
    for (const RawField& field : fields) {
        if (IsField(field, "Received") && !IsOfHost(ReceivingHost(DecodeHeaderValue(field.value)), host)) {
            break;
        }
        if (IsField(field, "Authentication-Results")) {
            const AuthenticationReport report = ReadAuthenticationResults(DecodeHeaderValue(field.value));
            if (IsOfHost(report.server, host)) {
                AddReport(report, all);
            }
        }
    }
    return all;
}

} // namespace quellbox
