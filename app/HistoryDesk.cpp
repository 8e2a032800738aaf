#include "app/HistoryDesk.h"

#include "app/ExportDesk.h"
#include "app/ExportFile.h"
#include "app/ListDesk.h"
#include "app/RefreshDesk.h"
#include "app/WindowJobs.h"
#include "archive/RefreshTimer.h"
#include "history/HistoryTable.h"
#include "history/Journal.h"
#include "history/frmHistory.h"
#include "mail/DisplayText.h"
#include "messages/FailureList.h"
#include "messages/KeptFolder.h"
#include "messages/Unblocking.h"
#include "settings/ChosenProfile.h"
#include "settings/frmMessageBox.h"
#include "whitelist/WhitelistMatcher.h"
#include "whitelist/WhitelistNotes.h"
#include "whitelist/WhitelistStore.h"

#include <QApplication>
#include <QDir>

#include <algorithm>
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
        return {failure.path, HistoryDesk::tr("The archive holds a message of this name already.")};
    }
    if (failure.problem != FileProblem::Missing || !failure.path.startsWith(PlaceOf(facts))) {
        return failure;
    }
    return {failure.path, facts.kept.isEmpty()
                              ? HistoryDesk::tr("The mail server has taken the message out of the pickup directory.")
                              : HistoryDesk::tr("The message is not kept any more.")};
}

MessageRow RowOf(const HistoryEntry& entry) {
    return {entry.file, entry.size, 0, {entry.to, entry.from, entry.subject, entry.rating, entry.sender}};
}

/// The lines that a filter lets through, so many at a time: the length of a question has a limit.
std::vector<HistoryLine> AllLines(JournalDatabase& database, const HistoryFilter& filter) {
    constexpr size_t step = 1000;
    const HistoryIds ids = database.Find(filter);
    std::vector<HistoryLine> lines;
    lines.reserve(ids.size());
    for (size_t first = 0; first < ids.size(); first += step) {
        const auto begin = ids.begin() + static_cast<std::ptrdiff_t>(first);
        const auto count = static_cast<std::ptrdiff_t>(std::min(step, ids.size() - first));
        std::vector<HistoryLine> some = database.Lines(HistoryIds(begin, begin + count));
        std::move(some.begin(), some.end(), std::back_inserter(lines));
    }
    return lines;
}

} // namespace

HistoryDesk::HistoryDesk(const WindowParts& parts, ListDesk& list, RefreshDesk& refresh, ExportDesk& exporting)
    : parts_(parts), list_(list), refresh_(refresh), exporting_(exporting),
      recovery_(parts.ports.files, parts.ports.pool, parts.journal) {
    connect(&parts_.jobs, &WindowJobs::PutBackEnded, this,
            parts_.errors.Guarded(this, &HistoryDesk::jobs_PutBackEnded));
    connect(&parts_.jobs, &WindowJobs::ActivityChanged, this, &HistoryDesk::TellUndoable);
    connect(&parts_.journal, &Journal::Changed, this, &HistoryDesk::LookForUndo);
    connect(&parts_.journal, &Journal::Troubled, this, &HistoryDesk::TellTrouble);
    connect(&refresh_, &RefreshDesk::Refreshed, this, &HistoryDesk::MaintainDaily);
    LookForUndo();
}

HistoryDesk::~HistoryDesk() = default;

// The work goes on without the history, and so without an answer.
void HistoryDesk::TellTrouble(const QString& text) {
    if (parts_.ports.reportError) {
        parts_.ports.reportError(text);
        return;
    }
    ShowBeside(QMessageBox::Warning, {QStringLiteral("msgHistory"), QStringLiteral("Quellbox"), text}, &parts_.window);
}

void HistoryDesk::mnuToolsHistory_Click() {
    if (!window_) {
        window_ = std::make_unique<frmHistory>(parts_.journal, &parts_.window);
        connect(window_.get(), &frmHistory::UndoClick, this, &HistoryDesk::UndoEntries);
        connect(window_.get(), &frmHistory::ExportClick, this, parts_.errors.Guarded(this, &HistoryDesk::Export));
        TellUndoable();
    }
    window_->show();
    window_->raise();
    window_->activateWindow();
}

// As long as deleted messages are kept, it is known how to put them back.
void HistoryDesk::MaintainDaily() {
    const QDate today = parts_.ports.clock.Now().date();
    if (std::exchange(maintained_, today) == today) {
        return;
    }
    const int days = std::max(parts_.state.HistoryDays, parts_.state.KeepDeletedDays);
    if (parts_.state.HistoryDays > 0) {
        parts_.journal.RemoveBefore(today.addDays(-days));
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
    parts_.journal.AskFor(Journal::Question::ReadsAll, this, find,
                          [this](const std::vector<UndoItem>& items) { Undo(items); });
}

void HistoryDesk::UndoEntries(const HistoryIds& entries) {
    const auto find = [entries](JournalDatabase& database) { return database.ItemsToUndo(entries); };
    parts_.journal.AskFor(Journal::Question::ReadsAll, this, find,
                          [this](const std::vector<UndoItem>& items) { Undo(items); });
}

void HistoryDesk::Export(const HistoryFilter& filter) {
    const QString day = parts_.ports.clock.Now().date().toString(Qt::ISODate);
    const RefreshTimer::Hold rest(parts_.timer);
    const QString file = AskExportFile(window_.get(), tr("History of %1").arg(day));
    if (file.isEmpty()) {
        return;
    }
    const auto read = [filter](JournalDatabase& database) { return AllLines(database, filter); };
    parts_.journal.AskFor(Journal::Question::Reads, this, read, [this, file](std::vector<HistoryLine> lines) {
        parts_.errors.Guard([&] { WriteLines(file, std::move(lines)); });
    });
}

void HistoryDesk::WriteLines(const QString& file, std::vector<HistoryLine> lines) {
    if (!parts_.jobs.MakeWay()) {
        parts_.errors.Show(
            tr("Nothing was exported, because something else is being done. Try again when it has ended."));
        return;
    }
    const int count = static_cast<int>(lines.size());
    const auto rows = std::make_shared<const std::vector<HistoryLine>>(std::move(lines));
    const bool ratesByNumber = ChosenProfile(parts_.state).RatesByNumber();
    exporting_.Write(file, HistoryTableColumns(ratesByNumber), CellsOf(rows), [this, file, count] {
        const QString name = CleanseForDisplay(QDir::toNativeSeparators(file));
        parts_.panels.SetInfo(tr("%n entries written to %1", nullptr, count).arg(name));
    });
}

// One action after the other, so that each has a record of its own. What the user has begun since goes first.
void HistoryDesk::Undo(const std::vector<UndoItem>& items) {
    const bool isElsewhere = QApplication::activeModalWidget() != nullptr;
    if (items.empty() || isUndoing_ || isElsewhere || !parts_.jobs.MakeWay()) {
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
    std::vector<PutBack> files;
    files.reserve(part.items.size());
    for (const UndoItem& item : part.items) {
        files.push_back(
            {PathNow(part.facts, item.entry.file), archive.PathOf(item.entry.file), RowOf(item.entry), item.id});
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
    QSet<QString> senders;
    for (size_t item = 0; item < result.fates.size(); ++item) {
        const PutBackFate& fate = result.fates[item];
        if (fate.failure) {
            failures_.push_back(Explain(*fate.failure, part.facts));
        } else if (fate.isDone) {
            senders.insert(part.items[item].entry.sender.toLower());
        }
    }
    mustRefresh_ = mustRefresh_ || parts_.state.ArchiveDir == part.facts.archive;
    if (!senders.isEmpty()) {
        parts_.errors.Guard([&] { StopTolerating(part.facts, senders); });
    }
}

// Left on the whitelist, a sender would be tolerated again by the next refresh. What the user has added goes as it
// came; of what a refresh has tolerated, whatever had matched.
void HistoryDesk::StopTolerating(const HistoryActionFacts& facts, const QSet<QString>& senders) {
    const QStringList added = facts.detail.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const auto matches = [&senders](const QString& entry) {
        const WhitelistMatcher matcher{QStringList(entry)};
        return std::any_of(senders.begin(), senders.end(),
                           [&matcher](const QString& sender) { return matcher.TolerableSender(sender); });
    };
    const QStringList before = LoadWhitelist(parts_.ports.store);
    QStringList entries = before;
    if (facts.action == HistoryAction::Tolerate) {
        entries.removeIf([&added](const QString& entry) { return added.contains(entry); });
    } else if (facts.action == HistoryAction::AutoTolerate) {
        entries.removeIf(matches);
    }
    if (entries != before) {
        [[maybe_unused]] const QStringList leftOut = SaveWhitelist(parts_.ports.store, entries);
        NoteWhitelistChanges(parts_.journal, parts_.ports.store, parts_.state.ArchiveDir, before);
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
