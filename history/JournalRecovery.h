#pragma once

#include "history/Journal.h"
#include "platform/FileSystem.h"
#include "platform/OrderedWork.h"

#include <QObject>
#include <QSet>

#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

/// The names of the files in the two folders of an interrupted action.
struct FoundFiles {
    QSet<QString> archive;
    QSet<QString> other; ///< pickup folder, or the one in which deleted messages are kept
};

/// What became of a file of an interrupted action, by where it is now. Empty for what a cleansing may have left alone.
std::optional<HistoryEntry> OutcomeOf(const InterruptedAction& action, const QString& file, const FoundFiles& found);

/// Completes the history of programs that ended in the middle of an action: looks where the messages are, and writes it
/// down. What cannot be found out now, because a share is not mounted, is left for the next start.
class JournalRecovery : public QObject {
    Q_OBJECT

public:
    /// What is lent has to outlive this object.
    JournalRecovery(const FileSystem& files, WorkPool& pool, Journal& journal);

    void Start();

Q_SIGNALS:
    /// So many actions were completed.
    void Ended(int actions);

private:
    using Outcome = std::optional<std::vector<HistoryEntry>>;

    void Look(std::vector<InterruptedAction> actions);
    void Complete(const InterruptedAction& action, std::vector<HistoryEntry> entries);

    const FileSystem& files_;
    WorkPool& pool_;
    Journal& journal_;
    std::optional<OrderedWork<Outcome>> looking_;
    int completed_ = 0;
    bool isLooking_ = false;
};

} // namespace quellbox
