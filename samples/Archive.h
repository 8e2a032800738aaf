#pragma once

#include <QByteArray>
#include <QString>

namespace quellbox::samples {

/// One file of the archive.
struct SampleFile {
    QString name;
    qint64 ageMs = 0; ///< how long before the present it was written
    QByteArray bytes;
};

/// The file with number `index` of the archive with this seed, written within the last `days` days. The files of an
/// archive do not depend on how many of them are made.
SampleFile MakeSampleFile(quint64 seed, qint64 index, qint64 days);

} // namespace quellbox::samples
