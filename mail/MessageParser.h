#pragma once

#include "mail/LoadError.h"
#include "mail/MailMessage.h"

#include <QByteArray>

#include <utility>
#include <vector>

namespace quellbox {

/// Bounds of what is taken apart; real mail stays far below. Beyond them a message is refused, not cut.
inline constexpr int kMaximumDepth = 100;
inline constexpr int kMaximumParts = 10'000;
inline constexpr int kMaximumFields = 100'000; ///< of the message and all its parts together

/// A message taken apart by GMime's full parser (RFC 2045 to 2049).
struct ParsedMessage {
    LoadError error = LoadError::None; ///< the rest is empty unless None
    std::vector<std::pair<QString, QString>> headers;
    std::vector<MessagePart> parts;
};

/// Parses a whole message. Attached messages are not taken apart, however deep they are nested.
ParsedMessage ParseMessage(const QByteArray& bytes);

} // namespace quellbox
