#pragma once

namespace quellbox {

/// What the main window is at work on. Anything but Idle keeps the list, the selection and the settings as they are.
enum class Activity {
    Idle,
    Refreshing, ///< the list is made anew, or added to
    Working,    ///< messages are disposed of, or something else is done that the user has asked for
    Closing
};

} // namespace quellbox
