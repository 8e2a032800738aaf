#pragma once

#define FUSE_USE_VERSION 312
#include <fuse3/fuse_lowlevel.h>

namespace quellbox {

/// Comes between the library and the kernel, for a session that was just mounted: tells the kernel that look-ups in one
/// folder may overlap, as they do on a share (libfuse before 3.17 knows the word for it, but does not pass it on), and
/// lets answers be lost. Returns whether that is arranged.
bool ComeBetween(fuse_session* session);

/// While this object lives, what this thread answers is lost: the kernel gets `error` in its place, an errno value;
/// with 0 this program is killed instead.
class LostAnswer {
public:
    explicit LostAnswer(int error);
    ~LostAnswer();
    LostAnswer(const LostAnswer&) = delete;
    LostAnswer& operator=(const LostAnswer&) = delete;

    /// Whether this thread's answer is lost.
    static bool IsLost();
};

} // namespace quellbox
