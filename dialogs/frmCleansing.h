#pragma once

#include "settings/AppState.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmCleansing;
}

namespace quellbox {

/// The dialog that asks how much of the archive to preserve. It leaves the answer in `AppState::CleansingConfirmed` and
/// `AppState::CleansingDays`, and removes nothing itself.
class frmCleansing : public QDialog {
    Q_OBJECT

public:
    frmCleansing(AppState& state, QWidget* parent);
    ~frmCleansing() override;

    /// OK.
    void accept() override;

    /// Cancel, Escape and the close box.
    void reject() override;

private:
    void optDays_Click(qint16 index);

    AppState& state_;
    std::unique_ptr<Ui::frmCleansing> ui_;
};

} // namespace quellbox
