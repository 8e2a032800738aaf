#pragma once

#include "history/HistoryModel.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmHistory;
}

namespace quellbox {

/// The window that shows what was done, the newest first. It is not modal: the work goes on beside it.
class frmHistory : public QDialog {
    Q_OBJECT

public:
    /// The journal has to outlive this object.
    frmHistory(Journal& journal, QWidget* parent);
    ~frmHistory() override;

    /// Whether something may be taken back now.
    void SetUndoAllowed(bool isAllowed);

    const HistoryModel& Model() const { return model_; }

Q_SIGNALS:
    /// The messages of these entries are to be put back.
    void UndoClick(const HistoryIds& entries);

    /// What is shown is to be written into a file.
    void ExportClick(const HistoryFilter& filter);

private:
    void FillChoices();
    void ConnectControls();
    void PrepareList();
    void SizeColumns();
    void Narrow();
    void ShowFound();
    void ShowSelection();
    void ShowDetails();
    void btnUndo_Click();
    void btnExport_Click();
    QList<int> SelectedRows(int most) const;
    bool SelectionCanBeUndone() const;

    std::unique_ptr<Ui::frmHistory> ui_;
    HistoryModel model_;
    bool isUndoAllowed_ = true;
};

} // namespace quellbox
