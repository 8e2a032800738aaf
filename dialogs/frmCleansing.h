#pragma once

#include "dialogs/CleansingPreview.h"
#include "platform/Clock.h"
#include "settings/AppState.h"

#include <QDialog>
#include <QTimer>

#include <memory>

namespace Ui {
class frmCleansing;
}

namespace quellbox {

/// What the cleansing wizard counts messages with. What is lent outlives the pool, whose threads may still wait for a
/// slow archive when the dialog has gone.
struct CleansingPorts {
    const FileSystem& files;
    WorkPool& pool;
    const Clock& clock;
};

/// The dialog that asks how much of the archive to preserve. It leaves the answer in `AppState::CleansingConfirmed` and
/// `AppState::CleansingDays`, and removes nothing itself. Meanwhile it counts what each choice would remove, which
/// holds up neither the user nor what follows.
class frmCleansing : public QDialog {
    Q_OBJECT

public:
    frmCleansing(const CleansingPorts& ports, AppState& state, QWidget* parent);
    ~frmCleansing() override;

    /// OK.
    void accept() override;

    /// Cancel, Escape and the close box.
    void reject() override;

private:
    void optDays_Click(qint16 index);
    QString PreviewOf(qint16 index) const;
    void ShowPreview();

    const Clock& clock_;
    AppState& state_;
    CleansingPreview preview_;
    QTimer midnight_; // other days are meant by the same choice then
    std::unique_ptr<Ui::frmCleansing> ui_;
};

} // namespace quellbox
