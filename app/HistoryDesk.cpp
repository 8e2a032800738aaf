#include "app/HistoryDesk.h"

#include "app/ListDesk.h"
#include "app/RefreshDesk.h"
#include "app/WhitelistNotes.h"
#include "app/WindowJobs.h"
#include "archive/RefreshTimer.h"
#include "history/Journal.h"
#include "history/frmHistory.h"
#include "messages/FailureList.h"
#include "messages/KeptFolder.h"
#include "whitelist/WhitelistMatcher.h"
#include "whitelist/WhitelistStore.h"

#include <algorithm>
#include <utility>

namespace quellbox {

namespace {

bool Tolerates(HistoryAction action) {
    return action == HistoryAction::Tolerate || action == HistoryAction::AutoTolerate;
}

/// Where the messages of an action are now.
QString PlaceOf(const HistoryActionFacts& facts) {
    return facts.kept.isEmpty() ? facts.pickup : facts.kept;
}

/// What is not where the action has put it will not come back; why, depends on where that was.
FileFailure Explain(const FileFailure& failure, const HistoryActionFacts& facts) {
    if (failure.problem != FileProblem::Missing) {
        return failure;
    }
    return {failure.path, facts.kept.isEmpty()
                              ? HistoryDesk::tr("The mail server has taken the message out of the pickup directory.")
                              : HistoryDesk::tr("The message is not kept any more.")};
}

MessageRow RowOf(const HistoryEntry& entry) {
    return {entry.file, entry.size, 0, {entry.to, entry.from, entry.subject, entry.rating, entry.sender}};
}

} // namespace

HistoryDesk::HistoryDesk(const WindowParts& parts, ListDesk& list, RefreshDesk& refresh)
    : parts_(parts), list_(list), refresh_(refresh), recovery_(parts.ports.files, parts.ports.pool, parts.journal) {
    connect(&parts_.jobs, &WindowJobs::PutBackEnded, this,
            parts_.errors.Guarded(this, &HistoryDesk::jobs_PutBackEnded));
    connect(&parts_.jobs, &WindowJobs::ActivityChanged, this, &HistoryDesk::TellUndoable);
    connect(&parts_.journal, &Journal::Changed, this, &HistoryDesk::LookForUndo);
    connect(&parts_.journal, &Journal::Troubled, this, [this](const QString& text) { parts_.errors.Show(text); });
}

HistoryDesk::~HistoryDesk() = default;

void HistoryDesk::mnuToolsHistory_Click() {
    if (!window_) {
        window_ = std::make_unique<frmHistory>(parts_.journal, &parts_.window);
        connect(window_.get(), &frmHistory::UndoClick, this, &HistoryDesk::UndoEntries);
        TellUndoable();
    }
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void HistoryDesk::Maintain() {
    const int days = parts_.state.HistoryDays;
    if (days > 0) {
        parts_.journal.RemoveBefore(parts_.ports.clock.Now().date().addDays(-days));
    }
    recovery_.Start();
}

void HistoryDesk::LookForUndo() {
    const auto look = [archive = QString(parts_.state.ArchiveDir)](JournalDatabase& database) {
        return database.LatestToUndo(archive);
    };
    parts_.journal.AskFor(Journal::Question::Reads, this, look, [this](std::optional<qint64> latest) {
        isUndoable_ = latest.has_value();
        TellUndoable();
    });
}

void HistoryDesk::TellUndoable() {
    list_.SetUndoable(isUndoable_);
    if (window_) {
        window_->SetUndoAllowed(parts_.jobs.IsIdle() || parts_.jobs.GivesWay());
    }
}

// What is the latest action is asked when all that was done before the key was pressed is written down.
void HistoryDesk::mnuEditUndo_Click() {
    const auto find = [archive = QString(parts_.state.ArchiveDir)](JournalDatabase& database) {
        const std::optional<qint64> latest = database.LatestToUndo(archive);
        return latest ? database.ItemsToUndo(*latest) : std::vector<UndoItem>();
    };
    parts_.journal.AskFor(Journal::Question::Reads, this, find,
                          [this](const std::vector<UndoItem>& items) { Undo(items); });
}

void HistoryDesk::UndoEntries(const HistoryIds& entries) {
    const auto find = [entries](JournalDatabase& database) { return database.ItemsToUndo(entries); };
    parts_.journal.AskFor(Journal::Question::Reads, this, find,
                          [this](const std::vector<UndoItem>& items) { Undo(items); });
}

// One action after the other, so that each has a record of its own.
void HistoryDesk::Undo(const std::vector<UndoItem>& items) {
    if (items.empty() || isUndoing_ || parts_.jobs.IsClosed() || !parts_.jobs.EndRefresh()) {
        return;
    }
    for (const UndoItem& item : items) {
        const bool isNew = left_.empty() || left_.back().items.front().action != item.action;
        if (isNew) {
            left_.push_back({item.facts, {}});
        }
        left_.back().items.push_back(item);
    }
    isUndoing_ = true;
    mustRefresh_ = false;
    failures_.clear();
    UndoNext();
}

void HistoryDesk::UndoNext() {
    const Part& part = left_.front();
    const Folder archive(part.facts.archive);
    const Folder place(PlaceOf(part.facts));
    std::vector<PutBack> files;
    files.reserve(part.items.size());
    for (const UndoItem& item : part.items) {
        files.push_back({place.PathOf(item.entry.file), archive.PathOf(item.entry.file), RowOf(item.entry), item.id});
    }
    QStringList emptied;
    if (!part.facts.kept.isEmpty()) {
        emptied << part.facts.kept << KeptFoldersOf(archive);
    }
    const qint64 action = part.items.front().action;
    parts_.timer.Stop();
    parts_.jobs.PutFilesBack(
        std::move(files), emptied,
        parts_.journal.Begin({HistoryAction::Undo, part.facts.archive, part.facts.pickup, part.facts.kept, action}));
}

void HistoryDesk::jobs_PutBackEnded(const PutBackResult& result) {
    if (!isUndoing_) {
        return;
    }
    TakeFates(left_.front(), result);
    const bool wasWhole = std::all_of(result.fates.begin(), result.fates.end(),
                                      [](const PutBackFate& fate) { return fate.isDone || fate.failure; });
    left_.pop_front();
    if (left_.empty() || !wasWhole || parts_.jobs.IsClosed()) {
        EndUndo();
    } else {
        UndoNext();
    }
}

void HistoryDesk::TakeFates(const Part& part, const PutBackResult& result) {
    QStringList senders;
    for (size_t item = 0; item < result.fates.size(); ++item) {
        const PutBackFate& fate = result.fates[item];
        if (fate.failure) {
            failures_.push_back(Explain(*fate.failure, part.facts));
        } else if (fate.isDone && Tolerates(part.facts.action)) {
            senders.append(part.items[item].entry.sender.toLower());
        }
    }
    mustRefresh_ = mustRefresh_ || parts_.state.ArchiveDir == part.facts.archive;
    parts_.errors.Guard([&] { StopTolerating(senders); });
}

// Left on the whitelist, a sender would be tolerated again by the next refresh.
void HistoryDesk::StopTolerating(const QStringList& senders) {
    const QStringList before = LoadWhitelist(parts_.ports.store);
    QStringList entries = before;
    entries.removeIf([&senders](const QString& entry) {
        const WhitelistMatcher matcher{QStringList(entry)};
        return std::any_of(senders.begin(), senders.end(),
                           [&matcher](const QString& sender) { return matcher.TolerableSender(sender); });
    });
    if (entries != before) {
        [[maybe_unused]] const QStringList leftOut = SaveWhitelist(parts_.ports.store, entries);
        NoteWhitelistChanges(parts_, before);
    }
}

void HistoryDesk::EndUndo() {
    left_.clear();
    isUndoing_ = false;
    parts_.failures.TakeAction(std::exchange(failures_, {}), parts_.ports.clock.Now());
    if (parts_.jobs.IsClosed()) {
        return;
    }
    if (mustRefresh_) {
        refresh_.mnuAcRefresh_Click();
    } else {
        parts_.timer.SetInterval();
    }
}

void HistoryDesk::Close() {
    if (window_) {
        window_->close();
    }
}

} // namespace quellbox
