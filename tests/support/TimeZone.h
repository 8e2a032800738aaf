#pragma once

#include <QtGlobal>

namespace quellbox {

/// Lets a test run in the time zone that TZ names. Windows has the zone of its settings, which Wine takes from TZ; its
/// C library would take the name of a zone for a rule of its own, so the variable is not for it to see.
inline void UseTimeZoneOfTest() {
#ifdef _WIN32
    qunsetenv("TZ");
#endif
}

} // namespace quellbox
