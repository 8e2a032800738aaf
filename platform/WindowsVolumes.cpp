#ifdef _WIN32

#include "platform/Volumes.h"

#include "platform/WideText.h"

#include <array>
#include <windows.h>

#include <winnetwk.h>

namespace quellbox {

namespace {

VolumeKind KindOf(const QString& root) {
    switch (GetDriveTypeW(Wide(root))) {
    case DRIVE_REMOVABLE:
        return VolumeKind::Removable;
    case DRIVE_REMOTE:
        return VolumeKind::Network;
    case DRIVE_CDROM:
        return VolumeKind::Optical;
    case DRIVE_RAMDISK:
        return VolumeKind::Ram;
    default:
        return VolumeKind::Fixed;
    }
}

/// The share behind a mapped drive like "X:"; empty when the system does not know it.
QString ShareOf(const QString& drive) {
    std::array<wchar_t, 1024> share{};
    DWORD capacity = share.size();
    const DWORD error = WNetGetConnectionW(Wide(drive), share.data(), &capacity);
    return error == NO_ERROR ? QString::fromWCharArray(share.data()) : QString();
}

QString LabelOf(const QString& root) {
    std::array<wchar_t, MAX_PATH + 1> label{};
    // The system shall not ask the user for a medium.
    DWORD before = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before);
    const bool known = GetVolumeInformationW(Wide(root), label.data(), static_cast<DWORD>(label.size()), nullptr,
                                             nullptr, nullptr, nullptr, 0) != 0;
    SetThreadErrorMode(before, nullptr);
    return known ? QString::fromWCharArray(label.data()) : QString();
}

/// What to call a drive. The label of a network drive is not read, since an absent server takes long to fail.
QString NameOf(const QString& root, VolumeKind kind) {
    const QString name = kind == VolumeKind::Network ? ShareOf(root.left(2)) : LabelOf(root);
    return name.isEmpty() ? root : name;
}

class WindowsVolumes : public Volumes {
public:
    std::vector<Volume> Mounted() const override {
        std::vector<Volume> volumes;
        const DWORD drives = GetLogicalDrives();
        for (char16_t letter = u'A'; letter <= u'Z'; ++letter) {
            if (((drives >> (letter - u'A')) & 1U) == 0) {
                continue;
            }
            const QString root = QChar(letter) + QStringLiteral(":\\");
            // A drive without a medium counts: choosing it gives a message that says so.
            const VolumeKind kind = KindOf(root);
            volumes.push_back({NameOf(root, kind), root, kind});
        }
        return volumes;
    }

    QString Resolve(const QString& path) const override { return path; }
};

} // namespace

std::unique_ptr<Volumes> MakeVolumes() {
    return std::make_unique<WindowsVolumes>();
}

} // namespace quellbox

#endif
