#pragma once

#include <QRandomGenerator>
#include <QString>

namespace quellbox {

/// What the names of files begin and end with that are not whole, or not in their place yet. No mail server picks up
/// such a file. The ending is not .tmp, under which Exchange keeps the files that it has begun to read ("Pickup
/// directory and Replay directory" of Microsoft Learn).
constexpr char temporaryPrefix[] = ".quellbox-";
constexpr char temporarySuffix[] = ".part";

/// A name for such a file, which no other one has.
inline QString TemporaryName() {
    return QLatin1String(temporaryPrefix) + QString::number(QRandomGenerator::system()->generate64(), 16) +
           QLatin1String(temporarySuffix);
}

} // namespace quellbox
