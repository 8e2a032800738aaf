#include "mail/CharsetDetector.h"

#include <uchardet.h>

#include <memory>

namespace quellbox {

namespace {

struct FreeDetector {
    void operator()(uchardet_t detector) const { uchardet_delete(detector); }
};

} // namespace

QByteArray DetectCharset(QByteArrayView bytes) {
    const std::unique_ptr<uchardet, FreeDetector> detector(uchardet_new());
    if (detector == nullptr ||
        uchardet_handle_data(detector.get(), bytes.data(), static_cast<size_t>(bytes.size())) != 0)
        return {};
    uchardet_data_end(detector.get());
    return QByteArray(uchardet_get_charset(detector.get())).toLower();
}

} // namespace quellbox
