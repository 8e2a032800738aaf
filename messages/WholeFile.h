#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>

namespace quellbox {

/// What becomes of a file that has the name already.
enum class ExistingFile { Keep, Replace };

/// A file that is there as a whole or not at all; what had its name stays as it is until Commit(). Every method throws
/// FileError, also where there is a file of that name, unless `existing` allows to replace it.
class WholeFile {
public:
    WholeFile(const QString& path, ExistingFile existing);

    void Write(const QByteArray& bytes);

    /// Puts the file in its place, when all of it is on the disk.
    void Commit();

private:
    void RequireFreeName() const;

    ExistingFile existing_;
    QSaveFile file_; // which leaves nothing behind unless it is committed
};

} // namespace quellbox
