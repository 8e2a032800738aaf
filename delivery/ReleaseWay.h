#pragma once

#include "platform/FolderPath.h"

#include <QString>

namespace quellbox {

/// A way on which messages leave the archive for those to whom they were written, other than the pickup directory. One
/// object serves one action. Every method may be called from several threads at once.
class ReleaseWay {
public:
    virtual ~ReleaseWay() = default;

    /// Delivers a message of the archive, whose file is gone afterwards, and returns what the other side has answered.
    /// Takes its time. Throws FileError, and the message is in the archive then: under its name where it certainly was
    /// not delivered, under UncertainName() where it may have been.
    virtual QString Release(const QString& name) = 0;

    /// Where messages go, for the history: as in "smtp://mail.example.org:25".
    virtual QString Target() const = 0;

    /// What is under way ends as soon as it can, and nothing more begins.
    virtual void Stop() = 0;
};

/// Whether a target of the history is that of such a way, and no folder.
inline bool IsReleaseTarget(const QString& target) {
    return target.startsWith(QLatin1String("smtp://")) || target.startsWith(QLatin1String("smtps://")) ||
           target.startsWith(QLatin1String("command:")) || target.startsWith(QLatin1String("replay:"));
}

} // namespace quellbox
