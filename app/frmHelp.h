#pragma once

#include "dialogs/HelpContents.h"
#include "platform/SettingsStore.h"
#include "platform/Shell.h"

#include <QTreeWidgetItem>
#include <QWidget>

#include <functional>
#include <memory>

namespace Ui {
class frmHelp;
}

namespace quellbox {

/// The window that shows help where the system has no viewer for compiled help files: the table of contents beside one
/// topic. The topics are compiled into the program; nothing else is ever loaded.
class frmHelp : public QWidget {
    Q_OBJECT

public:
    /// `report` is called with a sentence for the user.
    frmHelp(const Shell& shell, SettingsStore& store, std::function<void(const QString&)> report);
    ~frmHelp() override;

    /// Shows a topic by its file name, to which "#" and an anchor may be appended. Reports a topic that is missing, and
    /// then leaves the window as it is.
    void ShowTopic(const QString& topic);

    void ShowDefaultTopic();

    /// Shows the topic with a context id. Reports an id that no topic has.
    void ShowContext(int id);

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void FillContents();
    void ConnectControls();
    void Zoom(int steps);
    void txtTopic_LinkClick(const QUrl& link);
    void txtTopic_SourceChanged(const QUrl& source);
    void trvContents_Click(const QTreeWidgetItem* item);
    void txtSearch_Change();
    void txtSearch_Return();
    void MarkFound();

    const Shell& shell_;
    SettingsStore& store_;
    std::function<void(const QString&)> report_;
    std::unique_ptr<Ui::frmHelp> ui_;
    HelpProject project_;
    int zoom_ = 0; // steps above the font's own size
};

} // namespace quellbox
