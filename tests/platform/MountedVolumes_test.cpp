#ifndef _WIN32

#include "platform/MountedVolumes.h"

#include <QMutex>
#include <QSemaphore>
#include <QStringList>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

/// The lines of a mount table, numbered in their order. `mounts` are each "point type source options", and stand on the
/// first one.
QString Table(const QStringList& mounts) {
    QString table;
    int number = 20;
    for (const QString& mount : mounts) {
        const QStringList fields = mount.split(QLatin1Char(' '));
        table += QStringLiteral("%1 %2 8:1 / %3 %4 shared:1 - %5 %6 %4\n")
                     .arg(number)
                     .arg(number == 20 ? 1 : 20)
                     .arg(fields.at(0), fields.value(3, Text("rw,relatime")), fields.at(1), fields.at(2));
        ++number;
    }
    return table;
}

/// Answers questions, and remembers about what it was asked.
class MountedVolumesTest : public testing::Test {
protected:
    struct Asked {
        QMutex mutex;
        QStringList about;
    };

    MountQuestions Questions() const {
        const auto remember = [asked = asked_](const QString& about) {
            const QMutexLocker lock(&asked->mutex);
            asked->about += about;
        };
        MountQuestions questions;
        questions.isFolder = [remember, files = files_](const QString& root) {
            remember(root);
            return !files.contains(root);
        };
        questions.label = [remember](const QString& device) {
            remember(device);
            return device == Text("/dev/sdb1") ? Text("STICK") : QString();
        };
        questions.isRemovable = [](const QString& device) { return device.startsWith(Text("/dev/sdb")); };
        questions.user = user_;
        return questions;
    }

    /// "root=name" of each volume.
    std::string Listed(const QStringList& mounts) const {
        QStringList listed;
        for (const Volume& volume : MountedVolumes(Table(mounts), Questions())) {
            listed += volume.root + QLatin1Char('=') + volume.name;
        }
        return listed.join(QLatin1Char(' ')).toStdString();
    }

    std::string AskedAbout() const { return asked_->about.join(QLatin1Char(' ')).toStdString(); }

    QStringList files_;
    QString user_ = Text("1000");
    std::shared_ptr<Asked> asked_ = std::make_shared<Asked>();
};

TEST_F(MountedVolumesTest, AreInOrderOfTheirRootsAndHaveTheirLabels) {
    const QString table =
        Table({Text("/ ext4 /dev/sda1"), Text("/mnt/usb vfat /dev/sdb1"), Text("/home ext4 /dev/sda2")});
    const std::vector<Volume> volumes = MountedVolumes(table, Questions());
    ASSERT_EQ(volumes.size(), 3U);
    EXPECT_EQ(volumes[0].root, Text("/"));
    EXPECT_EQ(volumes[0].kind, VolumeKind::Fixed);
    EXPECT_EQ(volumes[1].root, Text("/home"));
    EXPECT_EQ(volumes[1].name, Text("/home"));
    EXPECT_EQ(volumes[2].name, Text("STICK"));
    EXPECT_EQ(volumes[2].kind, VolumeKind::Removable);
}

TEST_F(MountedVolumesTest, NetworkVolumesAreListedWithoutBeingAsked) {
    EXPECT_EQ(Listed({Text("/ ext4 /dev/sda1"), Text("/mnt/a cifs //nas/mail"), Text("/mnt/b nfs4 nas:/mail"),
                      Text("/mnt/c fuse.sshfs joe@nas:/mail"), Text("/mnt/d fuse.rclone any:")}),
              "/=/ /mnt/a=/mnt/a /mnt/b=/mnt/b /mnt/c=/mnt/c /mnt/d=/mnt/d");
    EXPECT_EQ(AskedAbout(), "/ /dev/sda1");
}

TEST_F(MountedVolumesTest, WhatIsMountedBelowANetworkVolumeIsNotAskedEither) {
    EXPECT_EQ(Listed({Text("/ ext4 /dev/sda1"), Text("/mnt/nas nfs nas:/x"), Text("/mnt/nas/disk ext4 /dev/sda2"),
                      Text("/mnt/nasty ext4 /dev/sda3")}),
              "/=/ /mnt/nas=/mnt/nas /mnt/nas/disk=/mnt/nas/disk /mnt/nasty=/mnt/nasty");
    EXPECT_EQ(AskedAbout(), "/ /mnt/nasty /dev/sda1 /dev/sda2 /dev/sda3");
}

TEST_F(MountedVolumesTest, ARootOnTheNetworkKeepsNobodyFromBeingAsked) {
    files_ = QStringList{Text("/etc/hosts")};
    EXPECT_EQ(Listed({Text("/ nfs nas:/root"), Text("/etc/hosts ext4 /dev/sda1"), Text("/home ext4 /dev/sda2")}),
              "/=/ /home=/home");
}

TEST_F(MountedVolumesTest, FilesCoversAndWhatTheSystemMountsForItselfAreNone) {
    files_ = QStringList{Text("/etc/hosts")};
    EXPECT_EQ(Listed({Text("/ ext4 /dev/sda1"), Text("/proc proc proc"), Text("/etc/hosts ext4 /dev/sda1"),
                      Text("/mnt/auto autofs systemd-1"), Text("/tmp tmpfs tmpfs"), Text("/secret tmpfs tmpfs ro")}),
              "/=/ /tmp=/tmp");
}

TEST_F(MountedVolumesTest, OnlyWhatIsInSightIsListed) {
    EXPECT_EQ(Listed({Text("/ ext4 /dev/sda1"), Text("/mnt/a ext4 /dev/sda2"), Text("/mnt/b/c ext4 /dev/sda3"),
                      Text("/mnt/a vfat /dev/sdb1"), Text("/mnt/b ext4 /dev/sda4")}),
              "/=/ /mnt/a=STICK /mnt/b=/mnt/b");
}

TEST_F(MountedVolumesTest, TheSharesOfTheDesktopAreListedForTheirUserWithoutBeingAsked) {
    const auto isListed = [this](const char* user, const char* mount) {
        user_ = Text(user);
        return Listed({Text("/ ext4 /dev/sda1"), Text("/run tmpfs tmpfs"), Text(mount)}) != "/=/";
    };
    EXPECT_TRUE(isListed("1000", "/run/user/1000/gvfs fuse.gvfsd-fuse gvfsd-fuse rw,nosuid,user_id=1000,group_id=7"));
    EXPECT_TRUE(isListed("1000", "/run/user/1000/gvfs fuse.gvfsd-fuse gvfsd-fuse rw,user_id=1001,allow_other"));
    EXPECT_TRUE(isListed("1000", "/run/user/1000/gvfs fuse.gvfsd-fuse gvfsd-fuse rw"));
    EXPECT_TRUE(isListed("1000", "/home/joe/.gvfs fuse.gvfsd-fuse gvfsd-fuse rw,user_id=1000"));
    EXPECT_FALSE(isListed("1000", "/run/user/1001/gvfs fuse.gvfsd-fuse gvfsd-fuse rw,user_id=1001"));
    EXPECT_FALSE(isListed("1000", "/home/ann/.gvfs fuse.gvfsd-fuse gvfsd-fuse rw,user_id=1001"));
    EXPECT_FALSE(isListed("100", "/run/user/1000/gvfs fuse.gvfsd-fuse gvfsd-fuse rw,user_id=1000"));
    EXPECT_FALSE(isListed("0", "/run/user/1000/gvfs fuse.gvfsd-fuse gvfsd-fuse rw,user_id=1000"));
    EXPECT_FALSE(isListed("1000", "/run/user/1000/doc fuse.portal portal rw,user_id=1000"));
    EXPECT_FALSE(isListed("1000", "/run/user/1000/net fuse.sshfs joe@nas:/ rw,user_id=1000"));
    EXPECT_FALSE(isListed("1000", "/run/user/1000 tmpfs tmpfs rw"));
    EXPECT_FALSE(AskedAbout().find("gvfs") != std::string::npos) << AskedAbout();
}

TEST_F(MountedVolumesTest, TheSharesOfTheDesktopHaveANameForUsers) {
    const QString shares = Text("/run/user/1000/gvfs fuse.gvfsd-fuse gvfsd-fuse rw,user_id=1000");
    const std::vector<Volume> volumes = MountedVolumes(Table({Text("/ ext4 /dev/sda1"), shares}), Questions());
    ASSERT_EQ(volumes.size(), 2U);
    EXPECT_EQ(volumes[1].root, Text("/run/user/1000/gvfs"));
    EXPECT_EQ(volumes[1].name, Text("Shares opened in the file manager"));
    EXPECT_EQ(volumes[1].kind, VolumeKind::Network);
    EXPECT_EQ(Listed({Text("/ ext4 /dev/sda1"), shares, Text("/run/user/1000 tmpfs tmpfs rw")}), "/=/")
        << "what is out of sight is listed";
}

TEST_F(MountedVolumesTest, BlanksInAPlaceAreRead) {
    EXPECT_EQ(Listed({Text("/ ext4 /dev/sda1"), Text("/mnt/a\\040b ext4 /dev/sda2")}), "/=/ /mnt/a b=/mnt/a b");
}

TEST_F(MountedVolumesTest, WithoutATableTheRootIsThere) {
    EXPECT_EQ(Listed({}), "/=/");
    EXPECT_EQ(Listed({Text("/home ext4 /dev/sda2")}), "/=/ /home=/home");
}

TEST_F(MountedVolumesTest, OneThatDoesNotAnswerIsListedAndHoldsUpNoOther) {
    const auto never = std::make_shared<QSemaphore>();
    const auto gone = std::make_shared<QSemaphore>();
    MountQuestions questions = Questions();
    questions.isFolder = [never, gone](const QString& root) {
        if (root == Text("/home")) {
            never->acquire();
            gone->release();
        }
        return root != Text("/mnt/file");
    };
    const std::vector<Volume> volumes =
        MountedVolumes(Table({Text("/ ext4 /dev/sda1"), Text("/home ext4 /dev/sda2"), Text("/mnt/file ext4 /dev/sda3"),
                              Text("/mnt/usb vfat /dev/sdb1")}),
                       questions);
    ASSERT_EQ(volumes.size(), 3U);
    EXPECT_EQ(volumes[1].root, Text("/home"));
    EXPECT_EQ(volumes[2].root, Text("/mnt/usb"));
    never->release();
    EXPECT_TRUE(gone->tryAcquire(1, 10'000));
}

} // namespace

} // namespace quellbox

#endif
