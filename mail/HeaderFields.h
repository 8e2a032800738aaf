#pragma once

#include "mail/ServerProfile.h"
#include "platform/FileSystem.h"

#include <QString>

#include <optional>
#include <vector>

namespace quellbox {

/// What the list shows of a message, read from its header block alone.
struct HeaderFields {
    int errorCode = 0; ///< 0 when the message was loaded
    QString errorText; ///< plain text; set when errorCode is not 0
    QString recipient; ///< the To field, decoded for display
    QString sender;    ///< the From field, decoded for display
    QString subject;   ///< the Subject field, decoded for display
    QString rating;    ///< how sure the filter is that it is spam, as the profile reads it; empty when it does not say
    QString xSender;   ///< the envelope sender, as the profile reads it; empty when absent
    bool isPacked = false; ///< the file is packed, as the profile allows
};

/// Reads a message file up to the blank line that ends its header block (with an upper bound), never its body.
/// Errors do not throw: they are the result's error code and text. May be called from several threads at once.
HeaderFields ReadHeaderFields(const FileSystem& files, const QString& path, const ServerProfile& profile);

/// The same for a file in a folder that was opened, by its name.
HeaderFields ReadHeaderFields(const FolderReader& folder, const QString& name, const ServerProfile& profile);

/// The same for bytes in memory, which begin with the header block.
HeaderFields ParseHeaderFields(QByteArrayView bytes, const ServerProfile& profile = ServerProfiles().front());

/// The values of fields, decoded for display, in the order in which they are wanted; nothing for one that is absent.
using FieldValueList = std::vector<std::optional<QString>>;

/// The values of any fields of a message in memory; none for bytes that are no message.
FieldValueList FieldValues(QByteArrayView bytes, const WantedFields& wanted);

/// The same for a file in a folder that was opened, packed or not. Throws FileError.
FieldValueList ReadFieldValues(const FolderReader& folder, const QString& name, const WantedFields& wanted);

} // namespace quellbox
