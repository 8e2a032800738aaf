#pragma once

#include "messages/StatusPanels.h"

#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolButton>

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

    /// Marks that so many messages could not be dealt with; none takes the mark away.
    void ShowFailures(int count);

    /// Offers to stop the job that runs, or no longer does.
    void ShowStop(bool show);

    QProgressBar& Progress() { return *prbFiles; }

Q_SIGNALS:
    /// The panel with that key was clicked.
    void PanelClick(const QString& key);

    /// The job that runs is to be stopped.
    void StopClick();

    /// What could not be dealt with is to be shown.
    void FailuresClick();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void MakeButtons();
    void ShowLater();
    void ShowNow();
    void PlaceProgress();

    StatusPanels& panels_;
    bool showIsDue_ = false;
    StatusPanelView* info_;
    StatusPanelView* size_;
    StatusPanelView* count_;
    QProgressBar* prbFiles;
    QToolButton* btnStop;
    QToolButton* btnFailures;
};

} // namespace quellbox
