#pragma once

namespace quellbox {

/// Starts GMime once in the program; every later call does nothing. To be called before any other use of GMime.
void StartGMime();

} // namespace quellbox
