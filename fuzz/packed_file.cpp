#include "fuzz/FuzzTarget.h"
#include "mail/PackedFile.h"

#include <algorithm>
#include <optional>

namespace quellbox {
namespace {

constexpr qint64 mostUnpacked = qint64{1} << 20;

/// Gives bytes in pieces of one size.
class PiecesOfInput : public InputFile {
public:
    PiecesOfInput(QByteArrayView bytes, qint64 size) : bytes_(bytes), size_(size) {}

    qint64 Read(char* buffer, qint64 capacity) override {
        const qint64 count = std::min<qint64>({capacity, size_, bytes_.size()});
        std::copy_n(bytes_.begin(), count, buffer);
        bytes_ = bytes_.sliced(count);
        return count;
    }

private:
    QByteArrayView bytes_;
    qint64 size_;
};

/// What is packed; nothing where it cannot be unpacked.
std::optional<QByteArray> Unpack(QByteArrayView bytes, qint64 piece) {
    try {
        UnpackedFile file(std::make_unique<PiecesOfInput>(bytes, piece), QStringLiteral("file"), mostUnpacked);
        return ReadWhole(file);
    } catch (const PackedFileError& error) {
        Require(!error.Reason().isEmpty(), "an error has a text");
        return std::nullopt;
    }
}

} // namespace
} // namespace quellbox

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quellbox;
    const QByteArrayView bytes(data, qsizetype(size));
    const std::optional<QByteArray> whole = Unpack(bytes, qsizetype(size) + 1);
    Require(whole == Unpack(bytes, 7), "how a file is read does not matter");
    if (!bytes.startsWith("\x1F\x8B")) {
        Require(whole == bytes.toByteArray(), "what is not packed stays as it is");
    } else if (whole) {
        Require(whole->size() <= mostUnpacked, "unpacking ends at the limit");
    }
    return 0;
}
