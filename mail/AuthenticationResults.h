#pragma once

#include "mail/MessageOutline.h"

#include <QString>

#include <vector>

namespace quellbox {

/// A result that a server writes of how it has checked the origin of a message, as "spf" and "fail".
struct AuthenticationResult {
    QString method;
    QString result;
};

/// What one field says.
struct AuthenticationReport {
    QString server; ///< which server says so
    std::vector<AuthenticationResult> results;
};

/// Reads the value of a field Authentication-Results (RFC 8601, section 2.2), unfolded; comments are passed over.
AuthenticationReport ReadAuthenticationResults(const QString& value);

/// The host behind "by" in the value of a field Received (RFC 5321, section 4.4); empty where there is none.
QString ReceivingHost(const QString& value);

/// What the own server says. Anybody may write such fields: it only counts what stands above the topmost Received of
/// another organization and names the host of the topmost Received, or its organization (RFC 8601, sections 5 and 7.1).
std::vector<AuthenticationReport> ReportsOfOwnServer(const RawFieldList& fields);

} // namespace quellbox
