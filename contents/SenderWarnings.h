#pragma once

#include "contents/MessageWarnings.h"

namespace quellbox {

/// The warnings about who has sent a message: EnvelopeSender, ReplyTo, DisplayName.
std::vector<MessageWarning> FindSenderWarnings(const WarningSource& source);

/// The domain that a message says it comes from: of the first sender in its From that has one.
QString DomainOfSender(const WarningSource& source);

/// The warnings of what the own server has found of the origin. Proof counts for the organization of `senderDomain`.
std::vector<MessageWarning> FindAuthenticationWarnings(const RawFieldList& fields, const QString& senderDomain);

} // namespace quellbox
