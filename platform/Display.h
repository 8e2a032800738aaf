#pragma once

namespace quellbox {

/// Whether the environment names something to show windows on, or says how else they are shown. Always true on Windows.
/// It does not tell whether the display answers.
bool HasDisplay();

/// Lets the program have its windows in memory only, so that it needs no display. Only an argument of the windowing
/// library that names another platform comes before it. To be called before there is an application object. Does
/// nothing on Windows, where windows can always be made.
void DrawNowhere();

} // namespace quellbox
