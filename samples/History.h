#pragma once

#include <QString>

namespace quellbox::samples {

/// What a history is made for.
struct HistoryPlan {
    QString file;    ///< of the database; new
    QString archive; ///< folder, as the history is to name it
    quint64 seed = 0;
    qint64 first = 0; ///< number of the first message that is not in the archive any more
    qint64 days = 0;  ///< the actions are of that many days
};

/// Writes a history of what was done before with messages like those of an archive. Throws std::exception.
void WriteSampleHistory(const HistoryPlan& plan);

} // namespace quellbox::samples
