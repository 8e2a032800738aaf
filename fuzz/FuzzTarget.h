#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What each target defines: takes one input apart and ends the program when a rule does not hold. Returns 0. The name
/// and the linkage are those that the fuzzer looks for.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace quellbox {

/// Ends the program with the broken rule when `holds` is false, in every build type.
inline void Require(bool holds, const char* rule) {
    if (!holds) {
        std::fprintf(stderr, "Broken rule: %s\n", rule);
        std::abort();
    }
}

} // namespace quellbox
