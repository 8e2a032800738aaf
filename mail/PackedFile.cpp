#include "mail/PackedFile.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <limits>
#include <new>

#include <zlib.h>

namespace quellbox {

namespace {

constexpr std::array<char, 2> mark{'\x1F', '\x8B'}; // RFC 1952, section 2.3.1
constexpr int windowBits = 15 + 16;                 // the largest window, and the format gzip

bool HasMark(const char* bytes, qint64 count) {
    return count >= 2 && std::equal(mark.begin(), mark.end(), bytes);
}

/// Reads on until `wanted` bytes are there or the file ends.
qint64 ReadAtLeast(InputFile& file, char* buffer, qint64 filled, qint64 capacity, qint64 wanted) {
    while (filled < wanted) {
        const qint64 count = file.Read(buffer + filled, capacity - filled);
        if (count == 0) {
            break;
        }
        filled += count;
    }
    return filled;
}

} // namespace

/// The packed bytes that were read and not yet unpacked, and where unpacking is.
class UnpackedFile::Unpacking {
public:
    Unpacking(InputFile& file, const QString& path, qint64 most, const char* first, qint64 count)
        : file_(file), path_(path), most_(most) {
        std::copy(first, first + count, input_.begin());
        stream_.next_in = Input();
        stream_.avail_in = static_cast<uInt>(count);
        if (::inflateInit2(&stream_, windowBits) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Unpacking() { ::inflateEnd(&stream_); }
    Unpacking(const Unpacking&) = delete;
    Unpacking& operator=(const Unpacking&) = delete;

    qint64 Read(char* buffer, qint64 capacity) {
        const auto room = static_cast<uInt>(std::min<qint64>(capacity, std::numeric_limits<int>::max()));
        stream_.next_out = reinterpret_cast<Bytef*>(buffer);
        stream_.avail_out = room;
        while (!isAtEnd_ && stream_.avail_out == room) {
            Step();
        }
        const qint64 count = room - stream_.avail_out;
        unpacked_ += count;
        if (unpacked_ > most_) {
            throw PackedFileError(path_, LoadError::UnpackedTooLarge);
        }
        return count;
    }

    static constexpr qint64 inputSize = 16 * 1024;

private:
    Bytef* Input() { return reinterpret_cast<Bytef*>(input_.data()); }

    /// Moves what is left of the input to its front, and reads on until it has so many bytes or the file ends.
    void Fill(qint64 wanted) {
        const qint64 left = stream_.avail_in;
        std::copy(stream_.next_in, stream_.next_in + left, Input());
        stream_.next_in = Input();
        stream_.avail_in = static_cast<uInt>(ReadAtLeast(file_, input_.data(), left, inputSize, wanted));
    }

    void Step() {
        if (stream_.avail_in == 0) {
            Fill(1);
        }
        const int result = ::inflate(&stream_, Z_NO_FLUSH);
        if (result == Z_STREAM_END) {
            BeginNextMember();
        } else if (result == Z_MEM_ERROR) {
            throw std::bad_alloc();
        } else if (result != Z_OK) { // Z_BUF_ERROR is the end of the file, since there is room
            throw PackedFileError(path_, LoadError::Damaged);
        }
    }

    /// A file may be several packed ones in a row. What else follows is passed over, as gzip does.
    void BeginNextMember() {
        Fill(2);
        if (HasMark(input_.data(), stream_.avail_in)) {
            ::inflateReset(&stream_);
        } else {
            isAtEnd_ = true;
        }
    }

    InputFile& file_;
    const QString& path_;
    const qint64 most_;
    std::array<char, inputSize> input_;
    z_stream stream_{};
    qint64 unpacked_ = 0;
    bool isAtEnd_ = false;
};

UnpackedFile::UnpackedFile(std::unique_ptr<InputFile> file, const QString& path, qint64 most)
    : file_(std::move(file)), path_(path), most_(most) {}

UnpackedFile::~UnpackedFile() = default;

qint64 UnpackedFile::Read(char* buffer, qint64 capacity) {
    if (unpacking_) {
        return unpacking_->Read(buffer, capacity);
    }
    if (wasBegun_) {
        return file_->Read(buffer, capacity);
    }
    wasBegun_ = true;
    const qint64 count = ReadAtLeast(*file_, buffer, 0, std::min(capacity, Unpacking::inputSize), 2);
    if (!HasMark(buffer, count)) {
        return count;
    }
    unpacking_ = std::make_unique<Unpacking>(*file_, path_, most_, buffer, count);
    return unpacking_->Read(buffer, capacity);
}

QByteArray ReadWholeMessage(const FileSystem& files, const QString& path, Packing packing,
                            const std::function<bool()>& goOn) {
    std::unique_ptr<InputFile> file = files.Open(path);
    if (packing == Packing::Never) {
        return ReadWhole(*file, goOn);
    }
    UnpackedFile unpacked(std::move(file), path);
    return ReadWhole(unpacked, goOn);
}

void RequireNotPacked(const FileSystem& files, const QString& path) {
    std::array<char, 2> first{};
    const std::unique_ptr<InputFile> file = files.Open(path);
    if (HasMark(first.data(), ReadAtLeast(*file, first.data(), 0, first.size(), first.size()))) {
        throw MessageIsPacked(path);
    }
}

FileError MessageIsPacked(const QString& path) {
    return {path,
            QCoreApplication::translate("quellbox",
                                        "The message is packed, and the pickup directory takes only .EML files."),
            FileProblem::Packed};
}

} // namespace quellbox
