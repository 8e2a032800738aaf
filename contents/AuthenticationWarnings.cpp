#include "contents/SenderWarnings.h"
#include "mail/AuthenticationResults.h"
#include "mail/OrganizationalDomain.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace quellbox {

namespace {

using Results = std::vector<AuthenticationResult>;

bool IsOfOrigin(const AuthenticationResult& each) {
    return each.method == QLatin1String("spf") || each.method == QLatin1String("dkim") ||
           each.method == QLatin1String("dmarc");
}

bool HasPassed(const AuthenticationResult& each) {
    return each.result == QLatin1String("pass");
}

/// Whether a result proves that a message comes from an organization: DMARC does, and a sender who has logged in
/// (RFC 8601, section 2.7.4) is one of the own. SPF and DKIM prove it for the domain that they name; of a server that
/// does not say which, and of a message that names no sender, nothing is held against it.
bool ProvesOrigin(const AuthenticationResult& each, const QString& organization) {
    if (!HasPassed(each)) {
        return false;
    }
    if (each.method == QLatin1String("dmarc") || each.method == QLatin1String("auth")) {
        return true;
    }
    const bool saysNothing = each.domain.isEmpty() || organization.isEmpty();
    return IsOfOrigin(each) && (saysNothing || AreOfOneOrganization(each.domain, organization));
}

/// The results that tell against the message, as "spf=fail".
QStringList FailedResults(const Results& results) {
    QStringList failed;
    for (const AuthenticationResult& each : results) {
        if (IsOfOrigin(each) &&
            (each.result.contains(QLatin1String("fail")) || each.result == QLatin1String("permerror"))) {
            failed.append(each.method + u'=' + each.result);
        }
    }
    return failed;
}

/// The sentence about a message without a proof.
QString UnprovenText(const AuthenticationReport& report) {
    const auto other = std::find_if(report.results.begin(), report.results.end(), [](const AuthenticationResult& each) {
        return IsOfOrigin(each) && HasPassed(each);
    });
    if (other == report.results.end()) {
        return QCoreApplication::translate("quellbox",
                                           "Your server %1 has found no proof of where the message comes from.")
            .arg(report.server);
    }
    return QCoreApplication::translate(
               "quellbox",
               "Your server %1 has proof only that the message comes from %2, which is not the sender's organization.")
        .arg(report.server, other->domain);
}

} // namespace

std::vector<MessageWarning> FindAuthenticationWarnings(const RawFieldList& fields, const QString& senderDomain) {
    const AuthenticationReport report = ReportOfOwnServer(fields);
    if (report.server.isEmpty()) {
        return {};
    }
    const Results& results = report.results;
    const auto isRefusal = [](const AuthenticationResult& each) {
        return each.method == QLatin1String("dmarc") && each.result == QLatin1String("fail");
    };
    const bool isProven = std::any_of(results.begin(), results.end(), [&](const AuthenticationResult& each) {
        return ProvesOrigin(each, senderDomain);
    });
    const QStringList failed = FailedResults(results);
    if (!failed.isEmpty() && (!isProven || std::any_of(results.begin(), results.end(), isRefusal))) {
        const QString text = QCoreApplication::translate(
            "quellbox", "Your server %1 has found that the message does not come from where it says: %2.");
        return {{MessageWarning::Kind::Authentication, text.arg(report.server, failed.join(QLatin1String(", ")))}};
    }
    if (!isProven) {
        return {{MessageWarning::Kind::Authentication, UnprovenText(report)}};
    }
    return {};
}

} // namespace quellbox
