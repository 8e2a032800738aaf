#pragma once

#include "delivery/SmtpReply.h"

namespace quellbox {

/// Which extensions a server offers, of those that matter when a message is handed in.
struct SmtpCapabilities {
    bool pipelining = false;     ///< several commands at once (RFC 2920)
    bool eightBit = false;       ///< bytes above 127 in messages (RFC 6152)
    bool smtpUtf8 = false;       ///< and in addresses (RFC 6531)
    bool authentication = false; ///< logging in (RFC 4954)
    bool size = false;           ///< hears the size in advance (RFC 1870)
    qint64 sizeLimit = 0;        ///< bytes; 0: the server tells none
};

/// What the answer to EHLO offers; the answer to HELO offers nothing.
SmtpCapabilities ParseCapabilities(const SmtpReply& hello);

} // namespace quellbox
