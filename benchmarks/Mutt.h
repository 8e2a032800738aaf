#pragma once

#include <QString>

namespace quellbox::bench {

/// Another program that lists message files, for comparison: mutt opens the files of `folder` as a Maildir.
class Mutt {
public:
    /// Lays out a Maildir in the new folder `place` that shows the files of `folder`.
    Mutt(const QString& folder, const QString& place);

    static bool IsInstalled();

    /// Seconds from mutt's start to its end, without and with its header cache. The first run with the cache fills it.
    double Open(bool withCache) const;

private:
    QString place_;
};

} // namespace quellbox::bench
