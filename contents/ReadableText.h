#pragma once

#include "mail/ServerProfile.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace quellbox {

/// The message as a person reads it, as plain text with LF line ends: what does not fit together in it (each a sentence
/// behind "! "), its From, To, Date and Subject, its text (made from the HTML where there is no other), its
/// attachments, and the places where its links lead. Lines of the text begin as ReadableBody says. `bytes` are what the
/// message file holds, unpacked; of what is no message the text is the reason why it is none. Control characters and
/// those that change the direction of writing are gone. Nothing is fetched. Stops early, with what it has, when `goOn`
/// is given and says no. May be called from several threads at once.
QString ReadableText(const QByteArray& bytes, const ServerProfile& profile, const std::function<bool()>& goOn = {});

} // namespace quellbox
