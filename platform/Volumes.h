#pragma once

#include <QString>

#include <memory>
#include <vector>

namespace quellbox {

enum class VolumeKind { Fixed, Removable, Network, Optical, Ram };

/// A drive on Windows, a mounted file system elsewhere.
struct Volume {
    QString name; ///< what the user reads: the label, or else the root
    QString root; ///< the path of its topmost folder
    VolumeKind kind = VolumeKind::Fixed;
};

/// The port to the places where folders can lie.
class Volumes {
public:
    virtual ~Volumes() = default;

    /// What is mounted now and can hold folders of the user, in order of the roots.
    virtual std::vector<Volume> Mounted() const = 0;

    /// The local form of a path. On Windows, and for every path but a UNC one, that is the path itself. A UNC path
    /// becomes the place where its share is mounted, and an empty text when the share is not mounted. A folder ends
    /// with a backslash; what follows the last one is the name of a file as its folder is listed.
    virtual QString Resolve(const QString& path) const = 0;
};

/// The volumes of the computer.
std::unique_ptr<Volumes> MakeVolumes();

/// The kind of a volume elsewhere than on Windows, by the type of its file system and by whether its medium is
/// removable.
VolumeKind KindOfVolume(const QString& fileSystemType, bool removable);

/// False for what the system mounts for itself elsewhere than on Windows, by its root and the type of its file system.
bool IsUserVolume(const QString& root, const QString& fileSystemType);

} // namespace quellbox
