#pragma once

#include <QString>

namespace quellbox {

/// The ways on which messages are unblocked, as the settings have them.
namespace DeliveryKeys {
constexpr auto pickup = "pickup";   ///< into the pickup directory
constexpr auto replay = "replay";   ///< into Exchange's replay directory
constexpr auto smtp = "smtp";       ///< to a mail server
constexpr auto command = "command"; ///< to a program
bool IsKey(const QString& text);
} // namespace DeliveryKeys

/// How the connection to a mail server is secured, as the settings have it.
namespace SecurityKeys {
constexpr auto none = "none";
constexpr auto startTls = "starttls"; ///< TLS once the server has offered it (RFC 3207)
constexpr auto tls = "tls";           ///< TLS from the first byte (RFC 8314)
bool IsKey(const QString& text);
} // namespace SecurityKeys

} // namespace quellbox
