#pragma once

#ifdef _WIN32
#include <cstdlib>

namespace quellbox {

/// Lets a test run in the time zone that TZ names. Windows has the zone of its settings, which Wine takes from TZ; its
/// C library would take the name of a zone for a rule of its own, so the variable is not for it to see. It looks once,
/// when something asks for a local time first: that may be while the objects of the tests are made, before main().
[[gnu::constructor(101)]] static void UseTimeZoneOfTest() {
    _putenv("TZ=");
}

} // namespace quellbox
#endif
