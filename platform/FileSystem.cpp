#include "platform/FileSystem.h"

namespace quellbox {

QByteArray ReadWhole(const FileSystem& files, const QString& path, const std::function<bool()>& goOn) {
    constexpr qsizetype step = 64 * 1024;
    const std::unique_ptr<InputFile> file = files.Open(path);
    QByteArray bytes;
    for (;;) {
        const qsizetype before = bytes.size();
        bytes.resize(before + step);
        const qint64 count = file->Read(bytes.data() + before, step);
        bytes.resize(before + count);
        if (count == 0 || (goOn && !goOn())) {
            return bytes;
        }
    }
}

} // namespace quellbox
