#pragma once

#include "messages/FileFailure.h"
#include "messages/MessageRow.h"

#include <QStringList>

#include <optional>

namespace quellbox {

/// What became of one message.
struct HandledMessage {
    MessageRow message; ///< only its key is certain; a size below 0 is unknown
    std::optional<FileFailure> failure;
    qint64 entry = 0;     ///< number by which the record knows what is taken back; 0 for all else
    QString detail{};     ///< what else belongs to it, as an entry of the whitelist or the answer of a mail server
    bool isFinal = false; ///< it cannot be taken back
};

/// Writes down what an action does with messages, so that it can be looked up and, where a program ends in the middle,
/// found out what had been done. Every method may be called from several threads at once. None fails: an action goes on
/// whatever becomes of its record.
///
/// A record is shared by those who touch files. When the last of them has let it go, what was announced and not taken
/// has not been touched. A program that ends before finds out at its next start what became of it.
class ActionRecord {
public:
    virtual ~ActionRecord() = default;

    /// These files of the archive may be touched from now on.
    virtual void Announce(const QStringList& files) = 0;

    /// Waits until what was announced is written down, or for a moment where that cannot be done; so it must not be
    /// called on the interface thread.
    virtual void AwaitAnnounced() = 0;

    /// A message has been dealt with, whether that failed or not.
    virtual void Take(HandledMessage handled) = 0;
};

} // namespace quellbox
