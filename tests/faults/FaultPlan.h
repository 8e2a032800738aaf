#pragma once

#ifdef __linux__

#include <QByteArray>

#include <map>
#include <vector>

namespace quellbox {

/// A kind of fault, and the rules by which it is tried, one after the other.
struct FaultKind {
    const char* name;
    std::vector<QByteArray> trials;
};

/// All faults for an action which, without any, makes these calls. Where there are many calls of a kind, some are
/// taken: the first ones, the last ones and some between.
std::vector<FaultKind> PlanFaults(const std::map<QByteArray, int>& calls);

} // namespace quellbox

#endif
