#pragma once

#include "contents/MessageWarnings.h"

namespace quellbox {

/// The warnings about who has sent a message: EnvelopeSender, ReplyTo, DisplayName.
std::vector<MessageWarning> FindSenderWarnings(const WarningSource& source);

/// The warnings of what the own server has found of its origin.
std::vector<MessageWarning> FindAuthenticationWarnings(const RawFieldList& fields);

} // namespace quellbox
