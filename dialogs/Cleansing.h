#pragma once

#include "messages/Disposal.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"

#include <QString>

#include <functional>
#include <vector>

namespace quellbox {

/// What the cleansing dialog says before an option is chosen. Lines end in CRLF, as in every text of this file.
QString CleansingIntroduction(const QString& archiveDir);

/// What the option for the day window `days` (0, 1, 2 or 7) adds to the sentence of CleansingQuestion(); empty for the
/// others and for 0, whose sentence deliberately ends without a full stop.
QString CleansingOptionTag(qint16 days);

/// What the dialog says once an option is chosen.
QString CleansingQuestion(const QString& archiveDir, qint16 days);

/// What a cleansing run did.
struct CleansingResult {
    qint32 count = 0; ///< files outside the day window; those that could not be removed count too
    std::vector<FileFailure> failures;
};

/// Deletes the messages of `archiveDir` whose last modification lies outside the window
/// of `days` calendar days that end today; 0 deletes them all, and a negative number, which stands for no choice, none.
/// Messages are the visible files named *.EML in any case that were there at the start; their folder alone is touched.
/// A failure never stops the run. `showProgress` is called with the name of the 1st, 26th, 51st... file before it goes.
[[nodiscard]] CleansingResult RemoveArchivedMessages(FileSystem& files, const Clock& clock, const QString& archiveDir,
                                                     qint16 days,
                                                     const std::function<void(const QString& name)>& showProgress);

} // namespace quellbox
