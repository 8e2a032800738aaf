#include "platform/UncPath.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

const char* const mountTable = "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
                               "40 22 0:50 / /mnt/mail rw,relatime shared:9 master:1 - cifs //nas/Mail rw,vers=3.1.1\n"
                               "41 22 0:51 / /mnt/deep rw,relatime - cifs //nas/Mail/spam/2024 rw\n"
                               "42 22 0:52 / /mnt/two\\040words rw,relatime - smb3 \\134\\134srv\\134Big\\040share rw\n"
                               "43 22 0:53 /old /mnt/bound rw,relatime - cifs //nas/bound rw\n"
                               "44 22 0:54 /sub /mnt/prefix rw,relatime - cifs //nas/prefix/sub rw\n"
                               "45 22 0:55 / /mnt/export rw,relatime - nfs4 //nfs/export rw\n"
                               "broken line\n";

TEST(UncPath, NeedsServerAndShare) {
    EXPECT_TRUE(IsUncPath(Text(R"(\\nas\mail)")));
    EXPECT_TRUE(IsUncPath(Text(R"(\\nas\mail\spam\)")));
    EXPECT_FALSE(IsUncPath(Text(R"(\\nas)")));
    EXPECT_FALSE(IsUncPath(Text(R"(\\)")));
    EXPECT_FALSE(IsUncPath(Text("//nas/mail")));
    EXPECT_FALSE(IsUncPath(Text("/home/mail")));
}

TEST(UncPath, MountedShareWithoutRegardToCase) {
    EXPECT_EQ(FindInMountTable(Text(R"(\\NAS\mail)"), Text(mountTable)), Text("/mnt/mail"));
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\MAIL\Archive\Day 1)"), Text(mountTable)), Text("/mnt/mail/Archive/Day 1"));
}

TEST(UncPath, SeparatorAtTheEndStays) {
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\mail\)"), Text(mountTable)), Text("/mnt/mail/"));
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\mail\a\)"), Text(mountTable)), Text("/mnt/mail/a/"));
}

TEST(UncPath, NearestMountedFolderWins) {
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\mail\spam\2024\May)"), Text(mountTable)), Text("/mnt/deep/May"));
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\mail\spam\20245)"), Text(mountTable)), Text("/mnt/mail/spam/20245"));
}

TEST(UncPath, EscapedBlanksAndBackslashesOfTheTable) {
    EXPECT_EQ(FindInMountTable(Text(R"(\\srv\big share\x)"), Text(mountTable)), Text("/mnt/two words/x"));
}

TEST(UncPath, MountedPartOfAShare) {
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\bound\old\x)"), Text(mountTable)), Text("/mnt/bound/x"));
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\bound\new)"), Text(mountTable)), QString());
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\prefix\sub\x)"), Text(mountTable)), Text("/mnt/prefix/x"));
}

TEST(UncPath, OnlyWindowsSharesCount) {
    EXPECT_EQ(FindInMountTable(Text(R"(\\nfs\export\x)"), Text(mountTable)), QString());
    EXPECT_EQ(FindInMountTable(Text(R"(\\other\mail)"), Text(mountTable)), QString());
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\mail)"), QString()), QString());
}

TEST(UncPath, DesktopShareMounts) {
    const QStringList mounts{Text("dav:host=nas"), Text("smb-share:server=nas,share=mail,user=joe"),
                             Text("smb-share:server=srv,share=two%20words")};
    EXPECT_EQ(FindInShareMounts(Text(R"(\\NAS\Mail\a\b)"), Text("/gvfs"), mounts),
              Text("/gvfs/smb-share:server=nas,share=mail,user=joe/a/b"));
    EXPECT_EQ(FindInShareMounts(Text(R"(\\srv\two words\)"), Text("/gvfs"), mounts),
              Text("/gvfs/smb-share:server=srv,share=two%20words/"));
    EXPECT_EQ(FindInShareMounts(Text(R"(\\nas\other)"), Text("/gvfs"), mounts), QString());
}

} // namespace

} // namespace quellbox
