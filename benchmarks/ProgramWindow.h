#pragma once

#include "app/frmMain.h"
#include "tests/support/MemoryPasswordStore.h"
#include "tests/support/MemorySettingsStore.h"

#include <functional>
#include <memory>

namespace quellbox::bench {

/// The program's main window, shown, on an archive, with settings of its own. The refresh timer is kept still, so that
/// only measured passes run.
class ProgramWindow {
public:
    ProgramWindow(FileSystem& files, const QString& archive) : ProgramWindow(files, archive, archive) {}
    ProgramWindow(FileSystem& files, const QString& archive, const QString& pickup);

    frmMain& Form() { return *form_; }

    /// The Refresh command: a full pass, to a filled and sorted list.
    void Refresh();

    /// The pass of the timer, which adds what has arrived since.
    void RefreshIncrementally();

    /// Begins a job of the window, and runs events until no job is left to be done.
    void UntilItHasEnded(const std::function<void()>& begin);

    /// What a command on every row took.
    struct Emptying {
        double seconds = 0;      ///< from the command until the list is empty and may be used again
        double longestGapMs = 0; ///< between turns of the event loop meanwhile
    };

    /// Selects every row and gives the command with this object name, which makes the rows go.
    Emptying EmptyList(const char* command);

    /// Runs the event loop until `holds` says yes. Ends the program when that takes longer than ten minutes.
    void WaitUntil(const std::function<bool()>& holds);

    /// Ends the program unless the list holds each file of the archive once, newest first, and the rows that are
    /// looked at show what their files say.
    void RequireWholeList();

private:
    void StopTimer();
    QAction& Command(const char* name);

    FileSystem& files_;
    MemorySettingsStore store_;
    std::unique_ptr<Clock> clock_ = MakeClock();
    std::unique_ptr<Shell> shell_ = MakeShell();
    std::unique_ptr<Volumes> volumes_ = MakeVolumes();
    MemoryPasswordStore passwords_;
    ProgramInfo program_;
    ThreadWorkPool pool_;
    std::unique_ptr<frmMain> form_;
};

} // namespace quellbox::bench
