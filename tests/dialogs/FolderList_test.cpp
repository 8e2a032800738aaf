#include "dialogs/FolderList.h"

#include "platform/RuntimeError.h"
#include "tests/support/FakeVolumes.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/NativePath.h"

#include <QDir>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

/// "depth:label=path" of every entry.
std::string Shown(const FolderList& list) {
    QStringList lines;
    for (int index = 0; index < list.Count(); ++index) {
        lines += QStringLiteral("%1:%2=%3")
                     .arg(list.Depth(index))
                     .arg(SlashPath(list.Label(index)), SlashPath(list.Path(index)));
    }
    return lines.join(QLatin1Char('\n')).toStdString();
}

class FolderListTest : public testing::Test {
protected:
    FolderListTest() {
        for (const char* folder : {"/", "/home", "/home/b", "/home/A", "/home/a", "/home/.hidden", "/home/b/c", "/data",
                                   "/mnt", "/mnt/usb", "/mnt/usb/deep", "/mnt/usbx"}) {
            files_.AddFolder(Text(folder));
        }
        files_.Add(Text("/home/file"), "x");
        volumes_.mounted = {{NativePath(Text("/")), NativePath(Text("/")), VolumeKind::Fixed},
                            {Text("STICK"), NativePath(Text("/mnt/usb")), VolumeKind::Removable}};
    }

    FolderList Open(const char* folder) const {
        return ListFirstFolder(files_, volumes_.mounted, NativePath(Text(folder)), NativePath(Text("/data")));
    }

    FolderList List(const char* folder) const { return ListFolder(files_, NativePath(Text(folder))); }

    static std::string Opened(const FolderList& list) { return SlashPath(list.Path(list.Opened())).toStdString(); }

    MemoryFileSystem files_;
    FakeVolumes volumes_;
};

TEST_F(FolderListTest, ShowsThePathDownToTheFolderThenItsSubFoldersInOrder) {
    const FolderList list = List("/home/");
    EXPECT_EQ(Shown(list), "0:/=/\n1:home=/home\n2:A=/home/A\n2:a=/home/a\n2:b=/home/b");
    EXPECT_EQ(list.Opened(), 1);
    EXPECT_EQ(Shown(List("/mnt/usb/deep")), "0:/=/\n1:mnt=/mnt\n2:usb=/mnt/usb\n3:deep=/mnt/usb/deep");
}

TEST_F(FolderListTest, ARootHasNoSecondSeparator) {
    const FolderList list = List("/");
    EXPECT_EQ(Shown(list), "0:/=/\n1:data=/data\n1:home=/home\n1:mnt=/mnt");
    EXPECT_EQ(list.Opened(), 0);
}

TEST_F(FolderListTest, FoldersThatCannotBeListedThrow) {
    files_.FailPath(Text("/data"), Text("Permission denied"));
    for (const char* folder : {"", "relative", "/none", "/home/file", "/data", R"(\\nas\mail)"}) {
        EXPECT_THROW(List(folder), FileError) << folder;
    }
}

TEST_F(FolderListTest, HostileNamesAreShownCleanAndKeptExact) {
    const QString name = QString::fromUtf16(u"a\nb\u202Ecod");
    files_.AddFolder(Text("/data/") + name);
    const FolderList list = List("/data");
    EXPECT_EQ(list.Label(2).toStdString(), "a bcod");
    EXPECT_EQ(SlashPath(list.Path(2)), Text("/data/") + name);
}

TEST_F(FolderListTest, OpensAnExistingFolderOnItsVolume) {
    EXPECT_EQ(Opened(Open("/mnt/usb/deep/")), "/mnt/usb/deep");
    EXPECT_EQ(Opened(Open("/")), "/");
}

TEST_F(FolderListTest, WithoutTheFolderItOpensTheCurrentOne) {
    files_.FailPath(Text("/home"), Text("Permission denied"));
    for (const char* folder : {"", "relative/", "/none", "/home/file", "/home", R"(\\nas\mail\)"}) {
        EXPECT_EQ(Opened(Open(folder)), "/data") << folder;
    }
}

TEST_F(FolderListTest, OnNoVolumeItOpensTheCurrentOne) {
    volumes_.mounted.erase(volumes_.mounted.begin());
    EXPECT_EQ(Opened(Open("/home")), "/data");
}

TEST_F(FolderListTest, WhereTheProcessWorksOnAShareItOpensADrive) {
    for (const char* current : {R"(\\nas\tools)", ""}) {
        const FolderList list = ListFirstFolder(files_, volumes_.mounted, Text(R"(\\nas\mail\)"), Text(current));
        EXPECT_EQ(Opened(list), "/") << current;
        EXPECT_EQ(list.Count(), 4) << current;
    }
    volumes_.mounted.erase(volumes_.mounted.begin());
    EXPECT_EQ(Opened(ListFirstFolder(files_, volumes_.mounted, {}, {})), "/mnt/usb")
        << "of no fixed kind, but the only one";
    volumes_.mounted.clear();
    EXPECT_EQ(ListFirstFolder(files_, volumes_.mounted, {}, {}).Count(), 0);
}

TEST_F(FolderListTest, ACurrentFolderThatCannotBeReadIsShownWithoutSubFolders) {
    files_.FailPath(Text("/data"), Text("Permission denied"));
    EXPECT_EQ(Shown(Open("/none")), "0:/=/\n1:data=/data");
}

TEST_F(FolderListTest, TheNearestVolumeHoldsAPath) {
    const auto volumeOf = [this](const char* path) { return VolumeOf(volumes_.mounted, NativePath(Text(path))); };
    EXPECT_EQ(volumeOf("/"), 0);
    EXPECT_EQ(volumeOf("/mnt"), 0);
    EXPECT_EQ(volumeOf("/mnt/usb"), 1);
    EXPECT_EQ(volumeOf("/mnt/usb/deep"), 1);
    EXPECT_EQ(volumeOf("/mnt/usbx"), 0);
    EXPECT_EQ(volumeOf("mnt/usb"), -1);
    EXPECT_EQ(volumeOf(""), -1);
}

TEST(FolderLabels, ADriveIsShownWithItsLabel) {
    EXPECT_EQ(DriveLabel({Text("/"), Text("/"), VolumeKind::Fixed}), QString(QDir::separator()));
    const Volume stick{Text("STICK\n2"), QDir::rootPath() + Text("usb/"), VolumeKind::Removable};
    EXPECT_EQ(DriveLabel(stick), DriveOf(stick) + Text(" [STICK 2]"));
    EXPECT_FALSE(DriveOf(stick).endsWith(QDir::separator()));
}

} // namespace

} // namespace quellbox
