#pragma once

#define FUSE_USE_VERSION 312
#include <fuse3/fuse_lowlevel.h>

namespace quellbox {

/// Tells the kernel of a session that was just mounted that look-ups in one folder may overlap, as they do on a share.
/// libfuse before 3.17 knows the word for it, but does not pass it on. Returns whether that is arranged.
bool LetLookupsOverlap(fuse_session* session);

} // namespace quellbox
