#pragma once

#include "mail/LoadError.h"
#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

namespace quellbox {

/// Whether messages may be packed with gzip, as the server says that has written them.
enum class Packing { Never, Possible };

/// A file cannot be unpacked, though it can be read.
class PackedFileError : public FileError {
public:
    PackedFileError(const QString& path, LoadError error) : FileError(path, LoadErrorText(error)), error_(error) {}

    /// Damaged or UnpackedTooLarge.
    LoadError Error() const { return error_; }

private:
    LoadError error_;
};

/// Unpacking ends at so many bytes: a small file may hold far more than there is memory for.
inline constexpr qint64 kMaximumUnpackedBytes = qint64{128} << 20;

/// Reads what is packed in a file (gzip, RFC 1952), and a file that is not packed as it is. Of a packed file no more is
/// read than is asked for.
class UnpackedFile : public InputFile {
public:
    /// `path` is what errors name. Unpacking more than `most` bytes is an error.
    UnpackedFile(std::unique_ptr<InputFile> file, const QString& path, qint64 most = kMaximumUnpackedBytes);
    ~UnpackedFile() override;

    /// `capacity` is at least 2 in the first call. Throws PackedFileError, also at the end of a file that ends before
    /// what is packed in it does.
    qint64 Read(char* buffer, qint64 capacity) override;

    /// Known after the first call of Read().
    bool IsPacked() const { return unpacking_ != nullptr; }

private:
    class Unpacking;

    std::unique_ptr<InputFile> file_;
    const QString path_;
    const qint64 most_;
    std::unique_ptr<Unpacking> unpacking_;
    bool wasBegun_ = false;
};

/// Reads a whole message file, unpacked. Stops early, with what it has, when `goOn` is given and says no. Throws
/// FileError.
QByteArray ReadWholeMessage(const FileSystem& files, const QString& path, Packing packing,
                            const std::function<bool()>& goOn = {});

/// Throws FileError with the problem Packed where a message file is packed, which the server of a pickup directory
/// would not understand.
void RequireNotPacked(const FileSystem& files, const QString& path);

/// The error that RequireNotPacked() throws.
FileError MessageIsPacked(const QString& path);

} // namespace quellbox
