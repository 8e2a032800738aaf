#pragma once

#include "history/Journal.h"
#include "history/JournalDatabase.h"
#include "messages/PutBackTask.h"

#include <QSet>
#include <QStringList>

#include <deque>
#include <vector>

namespace quellbox {

/// What is taken back of one action.
struct UndoPart {
    HistoryActionFacts facts;    ///< of that action
    std::vector<UndoItem> items; ///< at least one
};

/// What can be taken back of the latest action of the user on messages of an archive; nothing where that is impossible.
/// Throws JournalError.
std::vector<UndoItem> LatestItemsToUndo(JournalDatabase& database, const QString& archive);

/// What can be taken back, by actions, so that taking back each of them has a record of its own. The order stays, in
/// which the items of one action follow each other.
std::deque<UndoPart> DivideByAction(std::vector<UndoItem> items);

/// What the record of taking a part back is about.
HistorySubject SubjectOfUndo(const UndoPart& part);

/// The files that go back, in the order of the items.
std::vector<PutBack> FilesToPutBack(const UndoPart& part);

/// The folders that may be empty afterwards, and go then.
QStringList FoldersEmptiedBy(const UndoPart& part);

/// What became of a part.
struct UndoOutcome {
    std::vector<FileFailure> failures; ///< in words for the user, who has only put messages back
    QSet<QString> senders;             ///< envelope senders, in lower case, of the messages that are back
    bool isWhole = true;               ///< no message was left out, as when it was cancelled
};

UndoOutcome OutcomeOf(const UndoPart& part, const PutBackResult& result);

} // namespace quellbox
