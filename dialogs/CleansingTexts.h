#pragma once

#include <QString>

namespace quellbox {

/// What the cleansing dialog says before an option is chosen. Lines end in CRLF, as in every text of this file.
QString CleansingIntroduction(const QString& archiveDir);

/// What the option for the day window `days` (0, 1, 2 or 7) adds to the sentence of CleansingQuestion(); empty for the
/// others and for 0, whose sentence deliberately ends without a full stop.
QString CleansingOptionTag(qint16 days);

/// What the dialog says once an option is chosen.
QString CleansingQuestion(const QString& archiveDir, qint16 days);

} // namespace quellbox
