#pragma once

#include "app/WindowParts.h"

#include <QEvent>
#include <QObject>

namespace quellbox {

/// Shows that something lasts: an hourglass, the progress bar, a word, and a list that takes no input meanwhile. It
/// follows the jobs of the window by itself.
class BusyDisplay : public QObject {
    Q_OBJECT

public:
    explicit BusyDisplay(const WindowParts& parts);

    /// Enters or leaves the busy state around a long operation of `maximum` steps. Leaving it sorts the list.
    void SetBusy(bool busy, int maximum);

    /// True from when it is to be seen until it no longer is.
    bool IsShown() const { return isShown_; }

    /// Shows the progress bar from 0 to `maximum`, or hides it.
    void ShowFileProgress(bool show, int maximum);
    void ShowProgress(int value);

    /// True for a key or a click in the list while a job works on it: nothing is to change the list or its selection
    /// then. Such input is dropped, not kept: a key that repeats must not delete the next message.
    bool HoldsBack(const QObject* watched, const QEvent& event) const;

    /// A dialog does not have to wait, and has no hourglass over it. To be called when one may have come or gone.
    void FollowDialogs();

Q_SIGNALS:
    /// What can be used is to be shown anew.
    void Changed();

private:
    void jobs_ActivityChanged();
    void ShowBusy();
    void ShowDone();
    void ShowHourglass(bool show);

    WindowParts parts_;
    bool isShown_ = false;
    bool hourglassIsShown_ = false;
};

} // namespace quellbox
