#pragma once

#ifdef __linux__

#include "tests/faults/FaultScene.h"

#include <functional>

namespace quellbox {

/// One of the things that the program does with many messages, by its own tasks.
struct FaultAction {
    const char* name;
    Wanted wanted;

    /// Does it, from the moment in which `begin` is called; what comes before is what the program has done by then.
    std::function<Told(FaultScene& scene, FileSystem& files, const std::function<void()>& begin)> run;
};

const std::vector<FaultAction>& FaultActions();

} // namespace quellbox

#endif
