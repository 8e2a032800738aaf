#pragma once

#include "delivery/Delivery.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>

namespace quellbox {

/// A program that delivers messages as sendmail does: the envelope is in its arguments, the message comes in on its
/// standard input.
struct DeliveryCommand {
    QString program;       ///< a path, or a name that is looked for in PATH, /usr/sbin and /usr/lib
    QStringList arguments; ///< with SENDER, RECIPIENT... and RECIPIENT still in them
};

/// The command that suits most mail servers.
QString DefaultDeliveryCommand();

/// Splits a command as a shell would, with its quotes and backslashes, though no shell ever runs. SENDER stands for the
/// envelope sender, which is <> for a bounce where SENDER is an argument of its own. The argument RECIPIENT... stands
/// for one argument for each recipient; RECIPIENT stands for the only one. Nothing when the command has no program,
/// names no recipient or has a quote without its end; `problem` then tells the user why.
std::optional<DeliveryCommand> ParseDeliveryCommand(const QString& line, QString* problem = nullptr);

/// Runs a command with one message, and waits until it has ended; asks at least ten times a second whether to go on.
/// An address that begins with "-" is handed over only after an argument "--".
///
/// Delivered: the command ended with 0, the words are what it wrote. Refused: it ended with another number. Uncertain:
/// it crashed, or was killed because `limit` was over or `goOn` said no. Failed: it was not started.
DeliveryOutcome RunDeliveryCommand(const DeliveryCommand& command, const Envelope& envelope, const QByteArray& message,
                                   std::chrono::milliseconds limit, const std::function<bool()>& goOn);

} // namespace quellbox
