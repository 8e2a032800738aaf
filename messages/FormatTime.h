#pragma once

#include <QString>

namespace quellbox {

/// Appends a local time (seconds since 1970) to a text as "yyyy-mm-dd hh:mm:ss".
void AppendTime(qint64 localSeconds, QString& to);

} // namespace quellbox
