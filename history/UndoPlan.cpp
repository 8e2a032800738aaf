#include "history/UndoPlan.h"

#include "messages/KeptFolder.h"
#include "messages/Unblocking.h"

#include <QCoreApplication>

#include <optional>
#include <utility>

namespace quellbox {

namespace {

/// Where the messages of an action are now.
QString PlaceOf(const HistoryActionFacts& facts) {
    return facts.kept.isEmpty() ? facts.pickup : facts.kept;
}

/// The path that a message has there.
QString PathNow(const HistoryActionFacts& facts, const QString& file) {
    return facts.kept.isEmpty() ? Folder(facts.pickup).PathOf(PickupName(facts.archive, file))
                                : KeptPath(facts.kept, file);
}

/// What the user reads, who has only put a message back.
FileFailure Explain(const FileFailure& failure, const HistoryActionFacts& facts) {
    if (failure.problem == FileProblem::Exists) {
        return {failure.path,
                QCoreApplication::translate("quellbox", "The archive holds a message of this name already.")};
    }
    if (failure.problem != FileProblem::Missing || !failure.path.startsWith(PlaceOf(facts))) {
        return failure;
    }
    return {failure.path, facts.kept.isEmpty()
                              ? QCoreApplication::translate(
                                    "quellbox", "The mail server has taken the message out of the pickup directory.")
                              : QCoreApplication::translate("quellbox", "The message is not kept any more.")};
}

MessageRow MessageOf(const HistoryEntry& entry) {
    return {entry.file, entry.size, 0, {entry.to, entry.from, entry.subject, entry.rating, entry.sender}};
}

} // namespace

std::vector<UndoItem> LatestItemsToUndo(JournalDatabase& database, const QString& archive) {
    const std::optional<qint64> latest = database.LatestToUndo(archive);
    return latest ? database.ItemsToUndo(*latest) : std::vector<UndoItem>();
}

std::deque<UndoPart> DivideByAction(std::vector<UndoItem> items) {
    std::deque<UndoPart> parts;
    for (UndoItem& item : items) {
        const bool isNew = parts.empty() || parts.back().items.front().action != item.action;
        if (isNew) {
            parts.push_back({item.facts, {}});
        }
        parts.back().items.push_back(std::move(item));
    }
    return parts;
}

HistorySubject SubjectOfUndo(const UndoPart& part) {
    return {HistoryAction::Undo, part.facts.archive, part.facts.pickup, part.facts.kept, part.items.front().action};
}

std::vector<PutBack> FilesToPutBack(const UndoPart& part) {
    const Folder archive(part.facts.archive);
    std::vector<PutBack> files;
    files.reserve(part.items.size());
    for (const UndoItem& item : part.items) {
        files.push_back(
            {PathNow(part.facts, item.entry.file), archive.PathOf(item.entry.file), MessageOf(item.entry), item.id});
    }
    return files;
}

QStringList FoldersEmptiedBy(const UndoPart& part) {
    if (part.facts.kept.isEmpty()) {
        return {};
    }
    return {part.facts.kept, KeptFoldersOf(part.facts.archive)};
}

UndoOutcome OutcomeOf(const UndoPart& part, const PutBackResult& result) {
    UndoOutcome outcome;
    for (size_t item = 0; item < result.fates.size(); ++item) {
        const PutBackFate& fate = result.fates[item];
        if (fate.failure) {
            outcome.failures.push_back(Explain(*fate.failure, part.facts));
        } else if (fate.isDone) {
            outcome.senders.insert(part.items[item].entry.sender.toLower());
        } else {
            outcome.isWhole = false;
        }
    }
    return outcome;
}

} // namespace quellbox
