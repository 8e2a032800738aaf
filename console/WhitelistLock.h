#pragma once

#include "console/Session.h"

#include <QLockFile>

namespace quellbox {

/// Keeps another run of this program from changing the whitelist between reading and writing it.
class WhitelistLock {
public:
    /// Waits for another one, but not for long. Throws CommandError.
    explicit WhitelistLock(Session& session);

private:
    QLockFile file_;
};

} // namespace quellbox
