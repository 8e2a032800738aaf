#pragma once

#include "platform/FileSystem.h"

#include <QString>

#include <optional>

namespace quellbox {

/// What the list shows of a message, read from its header block alone.
struct HeaderFields {
    int errorCode = 0;             ///< 0 when the message was loaded
    QString errorText;             ///< plain text; set when errorCode is not 0
    QString recipient;             ///< the To field, decoded for display
    QString sender;                ///< the From field, decoded for display
    QString subject;               ///< the Subject field, decoded for display
    std::optional<QString> scl;    ///< X-SCL, when present
    std::optional<QString> smsmse; ///< X-SMSMSE-SCL, when present
    QString xSender;               ///< X-SENDER, the envelope sender; empty when absent
};

/// Reads a message file up to the blank line that ends its header block (with an upper bound), never its body.
/// Errors do not throw: they are the result's error code and text. May be called from several threads at once.
HeaderFields ReadHeaderFields(const FileSystem& files, const QString& path);

/// The same for a file in a folder that was opened, by its name.
HeaderFields ReadHeaderFields(const FolderReader& folder, const QString& name);

/// The same for bytes in memory, which begin with the header block.
HeaderFields ParseHeaderFields(QByteArrayView bytes);

} // namespace quellbox
