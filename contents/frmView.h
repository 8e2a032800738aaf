#pragma once

#include "platform/SettingsStore.h"

#include <QWidget>

#include <memory>

namespace Ui {
class frmView;
}

namespace quellbox {

/// The viewer window: the whole text of a message file, from its start. Enter, Space and Escape close it.
class frmView : public QWidget {
    Q_OBJECT

public:
    explicit frmView(SettingsStore& store);
    ~frmView() override;

    /// Shows a message file and its path as the caption, in place of what is shown now.
    void ShowMessage(const QString& path, const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void KeepInside();
    bool rtfRaw_KeyPress(const QKeyEvent& event);

    SettingsStore& store_;
    std::unique_ptr<Ui::frmView> ui_;
};

} // namespace quellbox
