#include "platform/ReaderCount.h"

#include <algorithm>

namespace quellbox {

int ReaderCount(std::chrono::nanoseconds perCall, int cores) {
    using namespace std::chrono_literals;
    if (perCall < 60us) {
        return std::max(2, cores);
    }
    return perCall < 400us ? 16 : 64;
}

} // namespace quellbox
