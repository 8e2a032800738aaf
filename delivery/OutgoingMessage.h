#pragma once

#include "delivery/Delivery.h"
#include "mail/ServerProfile.h"

#include <QByteArray>
#include <QByteArrayList>

namespace quellbox {

/// The envelope of a blocked message, from the fields that the server has put on top of it: those that the profile
/// knows, without another one between them. Whatever stands below, and all of a message that has no Received field (RFC
/// 5321, section 4.4), may be the sender's own text, who must not choose to whom a release goes. There may be no
/// recipients; the sender is that of bounces where none is known.
Envelope EnvelopeOf(QByteArrayView message, const ServerProfile& profile);

/// The message as it is to go out: without the fields that the server has put on top of it, and without Bcc. All other
/// bytes stay, so that signatures stay valid.
QByteArray WithoutServerFields(const QByteArray& message, const ServerProfile& profile);

/// Whether a field of one of these names, in lower case, stands above the first Received field, or anywhere in a header
/// that has none.
bool HasFieldOnTop(QByteArrayView message, const QByteArrayList& names);

} // namespace quellbox
