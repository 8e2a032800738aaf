#ifndef _WIN32

#include "platform/FolderPath.h"
#include "platform/MountTable.h"
#include "platform/MountedVolumes.h"
#include "platform/UncPath.h"
#include "platform/Volumes.h"

#include <QDir>

namespace quellbox {

namespace {

class PosixVolumes : public Volumes {
public:
    std::vector<Volume> Mounted() const override { return MountedVolumes(MountTableText(), SystemQuestions()); }

    QString Resolve(const QString& path) const override {
        if (!IsShareText(path)) {
            return path;
        }
        if (!IsUncPath(path)) {
            return {};
        }
        const QString table = MountTableText();
        QString found = FindInMountTable(path, table);
        if (found.isEmpty()) {
            found = FindOnDesktop(path);
        }
        return found.isEmpty() ? FindInNetworkFolder(path, table) : found;
    }

private:
    static QString FindOnDesktop(const QString& path) {
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
