#pragma once

#include <QString>

#include <chrono>
#include <limits>

namespace quellbox::bench {

/// How long `work` takes, in seconds.
template <class Work>
double Time(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The shortest of several measurements, which other work on the computer disturbs least.
struct Best {
    double seconds = std::numeric_limits<double>::infinity();

    void Add(double measured) { seconds = measured < seconds ? measured : seconds; }
};

/// Prints one line of the table of figures; `wanted` is empty for a figure that only informs.
void Report(const char* figure, double value, const char* unit, const char* wanted = "");

/// Ends the program with an error when a result is wrong. Being slow is no error.
void Require(bool holds, const char* what);

/// The argument at `index` as a folder that ends with a separator; ends the program when there is none.
QString FolderArgument(int argc, char** argv, int index);

/// A figure of this process from the kernel in KiB, such as "VmRSS:"; 0 where the kernel does not tell.
qint64 MemoryKiB(const char* field);

} // namespace quellbox::bench
