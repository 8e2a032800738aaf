#pragma once

#include <QLocale>
#include <QString>

namespace quellbox {

/// A size in bytes as display text in decimal units: "1000 bytes", "1.0 KB", "1.50 MB", "2.000 GB", with the decimal
/// sign of the locale.
QString FormatSize(qint64 bytes, const QLocale& locale = QLocale());

} // namespace quellbox
