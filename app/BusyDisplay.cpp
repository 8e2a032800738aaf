#include "app/BusyDisplay.h"

#include "app/MessageListView.h"
#include "app/ModalWindow.h"
#include "app/StatusBarView.h"
#include "app/WindowJobs.h"

#include <QHeaderView>

#include <algorithm>
#include <utility>

namespace quellbox {

BusyDisplay::BusyDisplay(const WindowParts& parts) : parts_(parts) {
    const WindowJobs* jobs = &parts_.jobs;
    connect(jobs, &WindowJobs::ActivityChanged, this, &BusyDisplay::jobs_ActivityChanged);
    connect(jobs, &WindowJobs::BusyDue, this, [this](int maximum) { SetBusy(true, maximum); });
    connect(jobs, &WindowJobs::Progress, this, &BusyDisplay::ShowProgress);
    connect(jobs, &WindowJobs::RowsAdded, this, &BusyDisplay::ShowProgress);
    connect(&parts_.statusBar, &StatusBarView::StopClick, jobs, [this] { parts_.jobs.Stop(); });
}

// What was shown on entering the busy state is taken back, and the list is sorted as its arrow says.
void BusyDisplay::jobs_ActivityChanged() {
    if (parts_.jobs.IsAtWork()) {
        return;
    }
    SetBusy(false, 0);
}

void BusyDisplay::SetBusy(bool busy, int maximum) {
    if (!busy) {
        parts_.list.SortList();
    }
    // What was shown on entering is taken back on leaving, even if the window has been hidden since.
    if ((!busy && !isShown_) || (busy && !parts_.window.isVisible())) {
        return;
    }
    const bool wasShown = std::exchange(isShown_, busy);
    ShowFileProgress(busy, maximum);
    if (busy != wasShown) {
        busy ? ShowBusy() : ShowDone();
    }
}

void BusyDisplay::ShowBusy() {
    if (parts_.list.hasFocus()) {
        parts_.window.setFocus(Qt::OtherFocusReason); // or the tree would get it, and show its first node
    }
    parts_.list.setEnabled(false);
    parts_.panels.SetInfo(tr("Please wait till operation completes..."));
    Q_EMIT Changed();
    parts_.statusBar.ShowStop(parts_.jobs.IsAtWork());
    FollowDialogs();
}

void BusyDisplay::ShowDone() {
    parts_.list.setEnabled(true);
    parts_.panels.SetInfo(tr("Done"));
    Q_EMIT Changed();
    parts_.statusBar.ShowStop(false);
    FollowDialogs();
    if (!parts_.window.isMinimized()) {
        parts_.list.TakeFocus();
    }
}

bool BusyDisplay::HoldsBack(const QObject* watched, const QEvent& event) const {
    if (!parts_.jobs.IsAtWork() || parts_.jobs.GivesWay()) {
        return false;
    }
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::ContextMenu:
        return watched == &parts_.list || watched == parts_.list.viewport() ||
               watched == parts_.list.header()->viewport();
    default:
        return false;
    }
}

void BusyDisplay::FollowDialogs() {
    ShowHourglass(isShown_ && ModalWindow() == nullptr);
}

void BusyDisplay::ShowHourglass(bool show) {
    if (std::exchange(hourglassIsShown_, show) == show) {
        return;
    }
    if (show) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

void BusyDisplay::ShowFileProgress(bool show, int maximum) {
    parts_.statusBar.ShowFileProgress(show, maximum);
}

void BusyDisplay::ShowProgress(int value) {
    QProgressBar& bar = parts_.statusBar.Progress();
    bar.setValue(std::min(value, bar.maximum()));
}

} // namespace quellbox
