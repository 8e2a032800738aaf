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
#include "settings/ChosenProfile.h"
#include "settings/frmMessageBox.h"
#include "whitelist/UndoneTolerance.h"

#include <QApplication>
#include <QDir>

#include <algorithm>
#include <utility>

namespace quellbox {

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
        return LatestItemsToUndo(database, archive);
    };
    parts_.journal.AskFor(Journal::Question::ReadsAll, this, find,
                          [this](std::vector<UndoItem> items) { Undo(std::move(items)); });
}

void HistoryDesk::UndoEntries(const HistoryIds& entries) {
    const auto find = [entries](JournalDatabase& database) { return database.ItemsToUndo(entries); };
    parts_.journal.AskFor(Journal::Question::ReadsAll, this, find,
                          [this](std::vector<UndoItem> items) { Undo(std::move(items)); });
}

void HistoryDesk::Export(const HistoryFilter& filter) {
    const QString day = parts_.ports.clock.Now().date().toString(Qt::ISODate);
    const RefreshTimer::Hold rest(parts_.timer);
    const QString file = AskExportFile(window_.get(), tr("History of %1").arg(day));
    if (file.isEmpty()) {
        return;
    }
    const auto read = [filter](JournalDatabase& database) { return LinesOf(database, filter); };
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
void HistoryDesk::Undo(std::vector<UndoItem> items) {
    const bool isElsewhere = QApplication::activeModalWidget() != nullptr;
    if (items.empty() || isUndoing_ || isElsewhere || !parts_.jobs.MakeWay()) {
        return;
    }
    left_ = DivideByAction(std::move(items));
    isUndoing_ = true;
    mustRefresh_ = false;
    failures_.clear();
    UndoNext();
}

void HistoryDesk::UndoNext() {
    const UndoPart& part = left_.front();
    parts_.timer.Stop();
    parts_.jobs.PutFilesBack(FilesToPutBack(part), FoldersEmptiedBy(part), parts_.journal.Begin(SubjectOfUndo(part)));
}

void HistoryDesk::jobs_PutBackEnded(const PutBackResult& result) {
    if (!isUndoing_) {
        return;
    }
    const UndoOutcome outcome = OutcomeOf(left_.front(), result);
    TakeOutcome(left_.front().facts, outcome);
    left_.pop_front();
    if (left_.empty() || !outcome.isWhole || parts_.jobs.IsClosed()) {
        EndUndo();
    } else {
        UndoNext();
    }
}

void HistoryDesk::TakeOutcome(const HistoryActionFacts& facts, const UndoOutcome& outcome) {
    failures_.insert(failures_.end(), outcome.failures.begin(), outcome.failures.end());
    mustRefresh_ = mustRefresh_ || parts_.state.ArchiveDir == facts.archive;
    if (!outcome.senders.isEmpty()) {
        parts_.errors.Guard([&] {
            StopTolerating(parts_.ports.store, parts_.journal, parts_.state.ArchiveDir, facts, outcome.senders);
        });
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
