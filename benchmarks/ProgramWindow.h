#pragma once

#include "app/frmMain.h"
#include "tests/support/MemorySettingsStore.h"

#include <QThreadPool>

#include <memory>

namespace quellbox::bench {

/// The program's main window, shown, on an archive, with settings of its own. The refresh timer is kept still, so that
/// only measured passes run.
class ProgramWindow {
public:
    ProgramWindow(FileSystem& files, const QString& archive);

    frmMain& Form() { return *form_; }

    /// The Refresh command: a full pass, to a filled and sorted list.
    void Refresh();

    /// The pass of the timer, which adds what has arrived since.
    void RefreshIncrementally();

    /// Ends the program unless the list holds each file of the archive once, newest first, and the rows that are
    /// looked at show what their files say.
    void RequireWholeList();

private:
    void StopTimer();

    FileSystem& files_;
    MemorySettingsStore store_;
    Clock clock_;
    Shell shell_;
    Volumes volumes_;
    ProgramInfo program_;
    QThreadPool pool_;
    std::unique_ptr<frmMain> form_;
};

} // namespace quellbox::bench
