#pragma once

#include <QtGlobal>

#include <iterator>

namespace quellbox::samples {

/// Random numbers that are the same on every machine for the same seed (the standard library's distributions are not):
/// a 64-bit counter whose value is scrambled (SplitMix64).
class Random {
public:
    explicit Random(quint64 seed) : state_(seed) {}

    quint64 Next() {
        state_ += 0x9E3779B97F4A7C15U;
        quint64 value = state_;
        value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
        value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
        return value ^ (value >> 31);
    }

    /// A number from `low` to `high`, both included.
    qint64 Between(qint64 low, qint64 high) {
        return low + static_cast<qint64>(Next() % static_cast<quint64>(high - low + 1));
    }

    /// True in `percent` of 100 calls.
    bool Chance(int percent) { return Between(1, 100) <= percent; }

    template <typename Table>
    const auto& Pick(const Table& table) {
        return std::begin(table)[Between(0, static_cast<qint64>(std::size(table)) - 1)];
    }

private:
    quint64 state_;
};

} // namespace quellbox::samples
