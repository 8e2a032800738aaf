#pragma once

#ifndef _WIN32

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QSet>

namespace quellbox {

/// Temporary files that could not be removed, because the share did not answer, or of which nobody knows whether they
/// were made. They are removed as soon as the program writes into their folder again. May be used from several threads
/// at once.
class Leftovers {
public:
    /// The name of a temporary file, without its folder. No mail server picks up such a file.
    static QByteArray NewName();

    /// Notes that a temporary file may have been left behind.
    void Add(const QByteArray& path);

    /// Removes what was left behind in a folder, and, when it is asked for that folder for the first time, what other
    /// runs of the program have left there more than a day ago. Errors are ignored: the files stay noted.
    void RemoveIn(const QByteArray& folder);

private:
    QMutex mutex_;
    QHash<QByteArray, QSet<QByteArray>> names_; // by folder, which has an entry once it was looked through
};

} // namespace quellbox

#endif
