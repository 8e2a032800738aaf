#pragma once

#include "archive/RefreshTimer.h"
#include "dialogs/FindHistory.h"
#include "settings/AppState.h"

#include <QButtonGroup>
#include <QDialog>

#include <memory>
#include <optional>

namespace Ui {
class frmFind;
}

namespace quellbox {

/// Asks for the text to search for and the column to search. Accepting it only hides it, so that its text is there
/// when it is shown again; whoever made it saves the history and deletes it.
class frmFind : public QDialog {
    Q_OBJECT

public:
    /// Choosing a column sets `state.HeaderField` at once. The timer rests while the dialog is active: no refresh may
    /// come in between.
    frmFind(const SettingsStore& store, AppState& state, RefreshTimer& timer, QWidget* parent);
    ~frmFind() override;

    /// Gets the dialog ready to be shown for the search that `state` describes.
    void Prepare();

    /// The text to search for, without blanks around it once the dialog was accepted.
    QString Text() const;

    const FindHistory& History() const { return history_; }

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void cboFind_Change();
    void cboFind_Click(int index);
    void cboFind_DblClick();
    void optField_Click(int column);
    void btnOK_Click();
    void btnClear_Click();
    void UpdateOK();
    bool TakeText();
    void ShowTexts();
    void ShowField();

    AppState& state_;
    RefreshTimer& timer_;
    std::optional<RefreshTimer::Hold> hold_;
    FindHistory history_;
    std::unique_ptr<Ui::frmFind> ui_;
    QButtonGroup optField;
    int listIndex_ = -1; ///< the text of the history that was picked and not changed since, or -1
};

} // namespace quellbox
