#pragma once

#include "delivery/Delivery.h"
#include "mail/ServerProfile.h"

#include <QByteArray>

namespace quellbox {

/// The envelope of a blocked message, from the fields that the server has put on top of it. Below the first Received
/// field (RFC 5321, section 4.4) everything is the sender's own text, who must not choose to whom a release goes. There
/// may be no recipients; the sender is that of bounces where none is known.
Envelope EnvelopeOf(QByteArrayView message, const ServerProfile& profile);

/// The message as it is to go out: without the fields that the server has put on top of it, and without Bcc. All other
/// bytes stay, so that signatures stay valid.
QByteArray WithoutServerFields(const QByteArray& message, const ServerProfile& profile);

} // namespace quellbox
