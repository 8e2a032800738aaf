#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

namespace quellbox {

/// From whom and to whom a message goes, as servers say it to each other (RFC 5321, section 2.3.1): addresses without
/// angle brackets, in UTF-8. A sender without any character is the one of bounces.
struct Envelope {
    QByteArray sender;
    QByteArrayList recipients;
};

/// A message as it is handed over.
struct OutgoingMessage {
    Envelope envelope;
    QByteArray bytes;
    QString name{}; ///< of its file in the archive
};

/// What has become of a message that was to be delivered.
enum class DeliveryFate {
    Delivered, ///< the other side has it, and has said so
    Refused,   ///< the other side has said that it does not take it
    Failed,    ///< the other side has not got it, since it could not be asked
    Uncertain  ///< the other side may have it: its answer was lost
};

struct DeliveryOutcome {
    DeliveryFate fate = DeliveryFate::Failed;
    QString words{}; ///< what the other side answered, or what went wrong, for the user to read
    QString path{};  ///< of the file that a mail server has yet to take; empty where it has the message
};

} // namespace quellbox
