#include "mail/GMimeStart.h"

#include <gmime/gmime.h>

namespace quellbox {

void StartGMime() {
    // GMime is never shut down: threads of a pool may still hold conversion handles when main() ends.
    [[maybe_unused]] static const bool started = [] {
        g_mime_init();
        return true;
    }();
}

} // namespace quellbox
