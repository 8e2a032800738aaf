#include "history/JournalRecovery.h"

#include "delivery/ReleaseWay.h"
#include "delivery/SendingFolder.h"
#include "messages/Unblocking.h"
#include "platform/MessagePlaces.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <utility>

namespace quellbox {

namespace {

bool Deletes(HistoryAction action) {
    return action == HistoryAction::Delete || action == HistoryAction::Cleanse;
}

/// The folder into which an action moves, or out of which it moves back; empty for what is gone for good.
QString OtherFolder(const HistoryActionFacts& facts) {
    if (!facts.kept.isEmpty()) {
        return facts.kept;
    }
    return Deletes(facts.action) ? QString() : facts.pickup;
}

QSet<QString> NamesIn(const FileSystem& files, const QString& folder) {
    QSet<QString> names;
    if (!folder.isEmpty() && files.FolderExists(folder)) {
        for (const FolderEntry& entry : files.Entries(folder)) {
            names.insert(entry.name);
        }
    }
    return names;
}

/// The names of the messages that are being sent, or were when their program ended, and that are not back yet.
QSet<QString> NamesBeingSent(const FileSystem& files, const Folder& archive) {
    QSet<QString> names;
    for (const QString& name : NamesIn(files, SendingFolderOf(archive))) {
        if (const std::optional<SendingName> sent = ParseSendingName(name)) {
            names.insert(sent->In(archive));
        }
    }
    return names;
}

/// What the archive holds, in itself and in those of its folders that the files of the action were in.
QSet<QString> NamesInArchive(const FileSystem& files, const InterruptedAction& action) {
    const Folder archive = action.facts.archive;
    QSet<QString> folders{QString()};
    for (const QString& file : action.files) {
        folders.insert(file.chopped(NameInFolder(archive, file).size()));
    }
    QSet<QString> names;
    for (const QString& folder : folders) {
        for (const QString& name : NamesIn(files, archive.PathOf(folder))) {
            names.insert(folder + name);
        }
    }
    return names;
}

/// What a message is called where the action has moved it, or has moved it from.
QString OtherName(const HistoryActionFacts& facts, const QString& file) {
    if (!facts.kept.isEmpty()) {
        return NameInFolder(facts.kept, file);
    }
    return IsReleaseTarget(facts.pickup) ? file : PickupName(facts.archive, file);
}

/// Empty when the archive cannot be looked at. Where a share is not mounted there is an empty folder in its place.
std::optional<std::vector<HistoryEntry>> LookFor(const FileSystem& files, const InterruptedAction& action) {
    try {
        if (!files.FolderExists(action.facts.archive)) {
            return std::nullopt;
        }
        const QString other = OtherFolder(action.facts);
        const FoundFiles found{NamesInArchive(files, action), IsReleaseTarget(other)
                                                                  ? NamesBeingSent(files, action.facts.archive)
                                                                  : NamesIn(files, other)};
        if (found.archive.isEmpty()) {
            return std::nullopt;
        }
        std::vector<HistoryEntry> entries;
        for (const QString& file : action.files) {
            if (const std::optional<HistoryEntry> entry = OutcomeOf(action, file, found)) {
                entries.push_back(*entry);
            }
        }
        return entries;
    } catch (const FileError&) {
        return std::nullopt;
    }
}

HistoryEntry Failed(HistoryEntry entry, const QString& reason) {
    entry.result = HistoryResult::Failed;
    entry.reason = reason;
    return entry;
}

} // namespace

std::optional<HistoryEntry> OutcomeOf(const InterruptedAction& action, const QString& file, const FoundFiles& found) {
    HistoryEntry entry;
    entry.file = file;
    const bool isInArchive = found.archive.contains(file);
    const bool isInOther = found.other.contains(OtherName(action.facts, file));
    const bool shouldBeInArchive = action.facts.action == HistoryAction::Undo;
    if (IsReleaseTarget(action.facts.pickup) && !shouldBeInArchive) {
        entry.isFinal = true;
        if (isInOther || found.archive.contains(UncertainName(file))) {
            return Failed(entry,
                          QCoreApplication::translate("quellbox", "The program ended while the message was being "
                                                                  "sent. It may have been delivered."));
        }
    }
    if (isInArchive && isInOther) {
        return Failed(entry, QCoreApplication::translate(
                                 "quellbox", "The program ended in the middle. The message is in both folders."));
    }
    if (isInArchive && action.facts.action == HistoryAction::Cleanse) {
        return std::nullopt;
    }
    if (isInArchive != shouldBeInArchive) {
        return Failed(
            entry, QCoreApplication::translate("quellbox", "The program ended before it had dealt with the message."));
    }
    const bool isKept = !action.facts.kept.isEmpty();
    if (isKept && !isInArchive && !isInOther) {
        return Failed(entry, QCoreApplication::translate("quellbox", "The file is gone."));
    }
    return entry;
}

JournalRecovery::JournalRecovery(const FileSystem& files, WorkPool& pool, Journal& journal)
    : files_(files), pool_(pool), journal_(journal) {}

// Two programs that start at once do not both complete the same action: whoever comes first adopts it.
void JournalRecovery::Start() {
    if (std::exchange(isLooking_, true)) {
        return;
    }
    completed_ = 0;
    const auto adopt = [writer = journal_.Writer()](JournalDatabase& database) {
        std::vector<InterruptedAction> adopted;
        for (const QString& session : database.SessionsWithOpenActions()) {
            if (!writer->IsAbandoned(session)) {
                continue;
            }
            std::vector<InterruptedAction> actions = database.OpenActions(session);
            std::move(actions.begin(), actions.end(), std::back_inserter(adopted));
            database.Adopt(session, writer->Session());
        }
        return adopted;
    };
    journal_.AskFor(Journal::Question::Writes, this, adopt,
                    [this](std::vector<InterruptedAction> actions) { Look(std::move(actions)); });
}

void JournalRecovery::Look(std::vector<InterruptedAction> actions) {
    const auto all = std::make_shared<const std::vector<InterruptedAction>>(std::move(actions));
    looking_.emplace(
        pool_, all->size(), [&files = files_, all](size_t item) { return LookFor(files, (*all)[item]); },
        [this, all](size_t item, Outcome entries) {
            if (entries) {
                Complete((*all)[item], std::move(*entries));
            }
        },
        [this](SeriesEnd) {
            isLooking_ = false;
            Q_EMIT Ended(completed_);
        },
        oneAtATime);
    looking_->Start();
}

void JournalRecovery::Complete(const InterruptedAction& action, std::vector<HistoryEntry> entries) {
    ++completed_;
    const auto write = [action, entries = std::move(entries)](JournalDatabase& database) {
        QStringList done;
        for (const HistoryEntry& entry : entries) {
            database.AddEntry(action.id, entry);
            if (entry.result == HistoryResult::Done) {
                done.append(entry.file);
            }
        }
        if (action.facts.action == HistoryAction::Undo) {
            database.MarkUndone(action.facts.undoes, done);
        }
        database.EndAction(action.id);
        return true;
    };
    journal_.AskFor(Journal::Question::Writes, this, write, [](bool) {});
}

} // namespace quellbox
