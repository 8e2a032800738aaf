#pragma once

namespace quellbox {

/// Tells assistive tools what a BarChart shows: each of its places is a child with a name, a value and a rect, which
/// has the focus and can be pressed. May be called more than once.
void InstallBarChartAccess();

} // namespace quellbox
