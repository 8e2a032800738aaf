#pragma once

#include <chrono>

namespace quellbox {

/// How many threads should wait for the file system at once, when one call takes `perCall`: the processor's `cores`
/// (at least 2, so that the interface thread is never starved) for what is in memory, more for a disk, many for a
/// share, where a call costs time but no work.
int ReaderCount(std::chrono::nanoseconds perCall, int cores);

} // namespace quellbox
