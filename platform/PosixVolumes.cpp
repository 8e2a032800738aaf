#ifndef _WIN32

#include "platform/FolderPath.h"
#include "platform/MountedVolumes.h"
#include "platform/PathBytes.h"
#include "platform/UncPath.h"
#include "platform/Volumes.h"

#include <QDir>
#include <QFile>

namespace quellbox {

namespace {

QString MountTable() {
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    return table.open(QIODevice::ReadOnly) ? PathText(table.readAll()) : QString();
}

class PosixVolumes : public Volumes {
public:
    std::vector<Volume> Mounted() const override { return MountedVolumes(MountTable(), SystemQuestions()); }

    QString Resolve(const QString& path) const override {
        if (!IsShareText(path)) {
            return path;
        }
        if (!IsUncPath(path)) {
            return {};
        }
        QString found = FindInMountTable(path, MountTable());
        if (!found.isEmpty()) {
            return found;
        }
        const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
        if (runtimeFolder.isEmpty()) {
            return {};
        }
        const QString mounts = runtimeFolder + QLatin1String("/gvfs");
        return FindInShareMounts(path, mounts, QDir(mounts).entryList(QDir::Dirs | QDir::NoDotAndDotDot));
    }
};

} // namespace

std::unique_ptr<Volumes> MakeVolumes() {
    return std::make_unique<PosixVolumes>();
}

} // namespace quellbox

#endif
