#pragma once

#include "app/WindowParts.h"
#include "history/HistoryTypes.h"
#include "history/JournalDatabase.h"
#include "history/JournalRecovery.h"
#include "history/UndoPlan.h"

#include <QDate>
#include <QObject>

#include <deque>
#include <memory>
#include <optional>

namespace quellbox {

class ExportDesk;
class ListDesk;
class RefreshDesk;
class frmHistory;

/// What was done before: looked up in a window of its own, and taken back.
class HistoryDesk : public QObject {
    Q_OBJECT

public:
    HistoryDesk(const WindowParts& parts, ListDesk& list, RefreshDesk& refresh, ExportDesk& exporting);
    ~HistoryDesk() override;

    void mnuToolsHistory_Click();
    void mnuEditUndo_Click();

    /// Finds out what can be taken back in the archive that is shown now.
    void LookForUndo();

    void Close();

private:
    void TellTrouble(const QString& text);
    void UndoEntries(const HistoryIds& entries);
    void Export(const HistoryFilter& filter);
    void WriteLines(const QString& file, std::vector<HistoryLine> lines);
    void Undo(std::vector<UndoItem> items);
    void UndoNext();
    void jobs_PutBackEnded(const PutBackResult& result);
    void TakeOutcome(const HistoryActionFacts& facts, const UndoOutcome& outcome);
    void MaintainDaily();
    void EndUndo();
    void TellUndoable();

    WindowParts parts_;
    ListDesk& list_;
    RefreshDesk& refresh_;
    ExportDesk& exporting_;
    JournalRecovery recovery_;
    std::unique_ptr<frmHistory> window_;
    bool isUndoable_ = false;   // the latest action
    std::deque<UndoPart> left_; // to be taken back; the first of them is under way
    std::vector<FileFailure> failures_;
    QDate maintained_; // forgot what is old, and completed what a program that ended has left open
    bool isUndoing_ = false;
    bool mustRefresh_ = false;
};

} // namespace quellbox
