#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

namespace quellbox::servers {

/// What the program is to know about a blocked message.
struct BlockedMessage {
    QString rating;
    QString sender; ///< of the envelope; empty for a bounce
    QString way;    ///< on which it is to be released, as the setting `Delivery` has it
};

/// A folder that a real filter has filled, and the server through which its messages are released.
struct BlockedFolder {
    QString profile; ///< as the setting `ServerProfile` has it
    QString archive;
    QString host;
    int port = 0;                            ///< behind the filter
    QString command;                         ///< the same, as the setting `DeliveryCommand` has it
    QHash<QString, BlockedMessage> messages; ///< by file name
};

/// The folder of a chain, from the file that the environment variable QUELLBOX_MAIL_EXPECTATIONS names and
/// tests/servers/mail_test.py has written. Without messages where there is none of that name.
BlockedFolder ReadBlockedFolder(const QString& chain);

} // namespace quellbox::servers
