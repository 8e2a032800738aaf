#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

namespace quellbox {

/// Whether a text can be the name of a header field: visible ASCII without a colon (RFC 5322, section 3.6.8).
bool IsFieldName(const QString& text);

/// The names in a text that commas separate, without blanks around them. Names that are empty are left out.
QStringList SplitFieldNames(const QString& text);

/// Whether a field is part of the message that its sender wrote, or a trace of its way, and not what a server says of a
/// message that it blocks. `name` is in any case.
bool IsFieldOfMessage(const QByteArray& name);

} // namespace quellbox
