#pragma once

#include "mail/MessageOutline.h"

#include <QString>

#include <vector>

namespace quellbox {

/// A result that a server writes of how it has checked the origin of a message, as "spf" and "fail".
struct AuthenticationResult {
    QString method;
    QString result;
    QString domain = {}; ///< for which it has checked (header.d, header.i, smtp.mailfrom), if it says so
};

/// What one field says.
struct AuthenticationReport {
    QString server; ///< which server says so
    std::vector<AuthenticationResult> results;
};

/// Reads the value of a field Authentication-Results (RFC 8601, section 2.2), unfolded; comments are passed over.
AuthenticationReport ReadAuthenticationResults(const QString& value);

/// The host behind "by" in the value of a field Received (RFC 5321, section 4.4); empty where there is none. The name
/// behind "from" is what the sender says, which may be "by", too.
QString ReceivingHost(const QString& value);

/// What the own server says; no server where it says nothing. Anybody may write such fields: it only counts what stands
/// above the topmost Received of another organization and names the host of the topmost Received, or its organization
/// (RFC 8601, sections 5 and 7.1). Of each method the topmost field that has it decides, because the own server writes
/// above all that it was sent.
AuthenticationReport ReportOfOwnServer(const RawFieldList& fields);

} // namespace quellbox
