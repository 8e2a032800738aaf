#pragma once

#include "delivery/Delivery.h"

namespace quellbox {

/// Whether an address can be named to a server or to a program without being taken for something else: it has no
/// control character, no angle bracket and no space outside quotes, is valid UTF-8, and is not longer than a path may
/// be. The quotes of a local part (RFC 5321, section 4.1.2) are obeyed.
bool IsSafeAddress(const QByteArray& address);

/// Why a message with this envelope cannot be handed to anybody, for the user; empty when it can.
QString ProblemOfEnvelope(const Envelope& envelope);

} // namespace quellbox
