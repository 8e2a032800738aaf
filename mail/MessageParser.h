#pragma once

#include "mail/LoadError.h"
#include "mail/MailMessage.h"

#include <QByteArray>

#include <vector>

namespace quellbox {

/// Bounds of what is taken apart; real mail stays far below. Beyond them a message is refused, not cut.
inline constexpr int kMaximumDepth = 100;
inline constexpr int kMaximumParts = 10'000;
inline constexpr int kMaximumFields = 100'000; ///< of the message and all its parts together

/// Takes a whole message apart with GMime's full parser (RFC 2045 to 2049). Attached messages are not taken apart,
/// however deep they are nested. What `headers` and `parts` hold after a failure has no meaning.
LoadError ParseMessage(const QByteArray& bytes, std::vector<HeaderField>& headers, std::vector<MessagePart>& parts);

} // namespace quellbox
