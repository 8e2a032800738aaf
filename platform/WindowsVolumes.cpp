#ifdef _WIN32

#include "platform/Volumes.h"

#include "platform/AskInTurn.h"
#include "platform/WideText.h"

#include <array>
#include <windows.h>

#include <winnetwk.h>

namespace quellbox {

namespace {

constexpr std::chrono::milliseconds patience{250};

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

/// The share behind a mapped drive like "X:"; empty when the system does not tell.
QString ShareOf(const QString& drive) {
    std::array<wchar_t, 1024> share{};
    DWORD capacity = share.size();
    const DWORD error = WNetGetConnectionW(Wide(drive), share.data(), &capacity);
    return error == NO_ERROR ? QString::fromWCharArray(share.data()) : QString();
}

QString LabelOf(const QString& root) {
    std::array<wchar_t, MAX_PATH + 1> label{};
    // A drive without a medium is no reason for the system to ask for one.
    DWORD before = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before);
    const bool known = GetVolumeInformationW(Wide(root), label.data(), static_cast<DWORD>(label.size()), nullptr,
                                             nullptr, nullptr, nullptr, 0) != 0;
    SetThreadErrorMode(before, nullptr);
    return known ? QString::fromWCharArray(label.data()) : QString();
}

/// Gives the drives the names that the user reads. A network drive is not asked for its label, since an absent server
/// answers late; neither does one drive that is slow to answer keep the others without theirs.
void Name(std::vector<Volume>& volumes) {
    std::vector<std::function<QString()>> questions;
    for (const Volume& volume : volumes) {
        questions.emplace_back([root = volume.root, isNetwork = volume.kind == VolumeKind::Network] {
            return isNetwork ? ShareOf(root.left(2)) : LabelOf(root);
        });
    }
    const auto names = AskInTurn<QString>(std::move(questions), patience);
    for (size_t index = 0; index < volumes.size(); ++index) {
        const QString name = names[index].value_or(QString());
        volumes[index].name = name.isEmpty() ? volumes[index].root : name;
    }
}

} // namespace

std::vector<Volume> Volumes::Mounted() const {
    std::vector<Volume> volumes;
    const DWORD drives = GetLogicalDrives();
    for (char16_t letter = u'A'; letter <= u'Z'; ++letter) {
        if (((drives >> (letter - u'A')) & 1U) == 0) {
            continue;
        }
        const QString root = QChar(letter) + QStringLiteral(":\\");
        // A drive without a medium counts: choosing it gives a message that says so.
        volumes.push_back({{}, root, KindOf(root)});
    }
    Name(volumes);
    return volumes;
}

QString Volumes::Resolve(const QString& path) const {
    return path;
}

} // namespace quellbox

#endif
