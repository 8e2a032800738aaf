#pragma once

#include "platform/Volumes.h"
#include "settings/ProgramInfo.h"

#include <QHash>

namespace quellbox {

/// Volumes that a test sets up: what is mounted, and where each share lies.
class FakeVolumes : public Volumes {
public:
    std::vector<Volume> Mounted() const override { return mounted; }

    QString Resolve(const QString& path) const override {
        if (!path.startsWith(QStringLiteral("\\\\"))) {
            return path;
        }
        for (auto share = shares.cbegin(); share != shares.cend(); ++share) {
            if (path.startsWith(share.key(), Qt::CaseInsensitive)) {
                QString rest = path.mid(share.key().size());
                return share.value() + rest.replace(QLatin1Char('\\'), QLatin1Char('/'));
            }
        }
        return {};
    }

    std::vector<Volume> mounted;
    QHash<QString, QString> shares; ///< local folder by `\\server\share`
};

/// A program of this name in this folder (which ends with a separator).
inline ProgramInfo TestProgram(const QString& folder, const QString& name = QStringLiteral("quellbox")) {
    return MakeProgramInfo(folder + name);
}

} // namespace quellbox
