#pragma once

#include "messages/StatusPanels.h"

#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>

namespace quellbox {

/// A panel of the status bar: one line of plain text, cut off with an ellipsis where it does not fit.
class StatusPanelView : public QLabel {
    Q_OBJECT

public:
    /// `subject` says to assistive tools what the panel is about.
    StatusPanelView(const QString& key, const QString& subject, QWidget* parent);

    void Show(const StatusPanel& panel);

Q_SIGNALS:
    void Clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QString subject_;
};

/// The status bar of the main window with its panels "info", "size" and "count", and the progress bar that a long
/// operation lays over "size".
class StatusBarView : public QStatusBar {
    Q_OBJECT

public:
    StatusBarView(StatusPanels& panels, QWidget* parent);

    /// Shows the progress bar from 0 to `maximum`, or hides it.
    void ShowFileProgress(bool show, int maximum);

    /// Paints what the panels say before it returns, although no event runs.
    void ShowAtOnce();

    QProgressBar& Progress() { return *prbFiles; }

Q_SIGNALS:
    /// The panel with that key was clicked.
    void PanelClick(const QString& key);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void ShowLater();
    void ShowNow();
    void PlaceProgress();

    StatusPanels& panels_;
    bool showIsDue_ = false;
    StatusPanelView* info_;
    StatusPanelView* size_;
    StatusPanelView* count_;
    QProgressBar* prbFiles;
};

} // namespace quellbox
