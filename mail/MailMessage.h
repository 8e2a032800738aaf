#pragma once

#include "mail/LoadError.h"
#include "platform/FileSystem.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace quellbox {

/// A header field: its name as written, and its value unfolded and decoded.
using HeaderField = std::pair<QString, QString>;

/// One leaf entity of a message.
struct MessagePart {
    std::vector<HeaderField> headers; ///< in the order of the file
    QString attachment;               ///< file name of the attachment; empty if it has none
    QString text;                     ///< decoded text with CRLF line ends; empty if it is no text
};

/// A message with its header fields and parts, parsed in full from a file. Deviant input never throws: what cannot be
/// loaded gives an error code and text.
class MailMessage {
public:
    /// Name and version of the library that parses messages, as in "GMime 3.2.13".
    static QString VersionText();

    /// Forgets the loaded message.
    void Reset() { *this = MailMessage(); }

    /// Loads a message file; 0 when it was loaded, else a code whose text is LastErrorText().
    int Load(const FileSystem& files, const QString& path);

    /// The same for bytes in memory.
    int LoadBytes(const QByteArray& bytes);

    QString LastErrorText() const { return errorText_; }

    /// The value of the message's first field of that name (any case), unfolded and decoded; empty when absent.
    std::optional<QString> Header(const QString& name) const;

    /// The values of all of that name.
    QStringList Headers(const QString& name) const;

    /// Display texts as the list shows them (see HeaderFields).
    QString Recipient() const;
    QString Sender() const;
    QString Subject() const;

    /// A message property by name: "DATE", "FROM", "TO", "CC", "BCC", "Subject"; empty when there is none.
    QString Property(const QString& name) const;

    /// The leaf entities, depth first. An attached message is one leaf; a message without a body has none.
    const std::vector<MessagePart>& Parts() const { return parts_; }

private:
    int Fail(LoadError error, const QString& text);

    QString errorText_;
    std::vector<HeaderField> headers_;
    std::vector<MessagePart> parts_;
};

} // namespace quellbox
