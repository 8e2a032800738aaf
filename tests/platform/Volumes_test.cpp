#include "platform/Volumes.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

namespace quellbox {

namespace {

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

TEST(Volumes, KindFollowsFileSystemThenMedium) {
    EXPECT_EQ(KindOfVolume(Text("ext4"), false), VolumeKind::Fixed);
    EXPECT_EQ(KindOfVolume(Text("vfat"), true), VolumeKind::Removable);
    EXPECT_EQ(KindOfVolume(Text("cifs"), false), VolumeKind::Network);
    EXPECT_EQ(KindOfVolume(Text("nfs4"), false), VolumeKind::Network);
    EXPECT_EQ(KindOfVolume(Text("fuse.rclone"), false), VolumeKind::Network);
    EXPECT_EQ(KindOfVolume(Text("fuseblk"), false), VolumeKind::Fixed);
    EXPECT_EQ(KindOfVolume(Text("iso9660"), true), VolumeKind::Optical);
    EXPECT_EQ(KindOfVolume(Text("tmpfs"), false), VolumeKind::Ram);
}

TEST(Volumes, MountedOnesHaveDistinctExistingRootsInOrder) {
    const std::vector<Volume> volumes = Volumes().Mounted();
    for (size_t index = 0; index < volumes.size(); ++index) {
        EXPECT_FALSE(volumes[index].name.isEmpty());
        // One on a network is listed whether or not it can be reached.
        EXPECT_TRUE(volumes[index].kind == VolumeKind::Network || QDir(volumes[index].root).exists());
        if (index > 0) {
            EXPECT_LT(volumes[index - 1].root, volumes[index].root);
        }
    }
}

TEST(Volumes, WhatTheSystemMountsForItselfIsNoUserVolume) {
    for (const char* root : {"/", "/home", "/mnt/usb", "/media/joe/stick", "/run/media/joe/stick", "/device", "/tmp"}) {
        EXPECT_TRUE(IsUserVolume(Text(root), Text("ext4"))) << root;
        EXPECT_FALSE(IsUserVolume(Text(root), Text("autofs"))) << root;
    }
    for (const char* root : {"/proc", "/sys/fs/cgroup", "/dev/shm", "/run", "/run/user/1000/gvfs", "/snap/core/1"}) {
        EXPECT_FALSE(IsUserVolume(Text(root), Text("tmpfs"))) << root;
    }
    for (const char* type : {"proc", "sysfs", "cgroup2", "devtmpfs", "tracefs", "fuse.portal", "nsfs"}) {
        EXPECT_FALSE(IsUserVolume(Text("/mnt/x"), Text(type))) << type;
    }
    EXPECT_TRUE(IsUserVolume(Text("/mnt/x"), Text("cifs")));
    EXPECT_TRUE(IsUserVolume(Text("/mnt/x"), Text("fuse.sshfs")));
    EXPECT_TRUE(IsUserVolume(Text("/tmp"), Text("tmpfs")));
}

TEST(Volumes, OtherPathsResolveToThemselves) {
    for (const char* path : {"", "/", "/home/mail/", "relative", "//nas/mail", "\\one"}) {
        EXPECT_EQ(Volumes().Resolve(Text(path)), Text(path));
    }
}

#ifndef _WIN32

TEST(Volumes, TheRootIsAlwaysOneOfThem) {
    const std::vector<Volume> volumes = Volumes().Mounted();
    ASSERT_FALSE(volumes.empty());
    EXPECT_EQ(volumes.front().root, Text("/"));
}

TEST(Volumes, UnmountedShareResolvesToNothing) {
    EXPECT_EQ(Volumes().Resolve(Text(R"(\\no-such-server\share\folder)")), QString());
    EXPECT_EQ(Volumes().Resolve(Text(R"(\\no-such-server)")), QString());
}

TEST(Volumes, ShareThatTheDesktopMountedIsFound) {
    const QTemporaryDir runtime;
    const QString mount = runtime.path() + Text("/gvfs/smb-share:server=some-server,share=mail");
    ASSERT_TRUE(QDir().mkpath(mount));
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    EXPECT_EQ(Volumes().Resolve(Text(R"(\\SOME-SERVER\mail\spam)")), mount + Text("/spam"));
    qputenv("XDG_RUNTIME_DIR", before);
}

#else

TEST(Volumes, DrivesHaveLettersAndKinds) {
    const std::vector<Volume> volumes = Volumes().Mounted();
    const auto system =
        std::find_if(volumes.begin(), volumes.end(), [](const Volume& volume) { return volume.root == Text("C:\\"); });
    ASSERT_NE(system, volumes.end());
    EXPECT_EQ(system->kind, VolumeKind::Fixed);
    for (const Volume& volume : volumes) {
        EXPECT_EQ(volume.root.size(), 3);
        EXPECT_EQ(volume.root.mid(1), Text(":\\"));
    }
}

TEST(Volumes, SharesAreReachedAsTheyAre) {
    EXPECT_EQ(Volumes().Resolve(Text(R"(\\nas\mail\spam)")), Text(R"(\\nas\mail\spam)"));
}

#endif

} // namespace

} // namespace quellbox
