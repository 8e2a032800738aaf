#pragma once

#include <QString>
#include <QStringList>

namespace quellbox {

/// Which files of an archive are messages.
struct MessagePlaces {
    /// Folders of the archive that hold them, each with a slash behind it; without any, it is the archive itself.
    QStringList folders = {};

    QString ending = {}; ///< their names end with it, in upper or lower case; without one, every file is a message
};

} // namespace quellbox
