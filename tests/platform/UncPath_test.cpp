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

TEST(UncPath, AMountThatIsCoveredIsOutOfSight) {
    const QString table = Text("22 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                               "40 22 0:50 / /mnt/mail rw - cifs //nas/mail rw\n"
                               "41 22 0:51 / /mnt/mail2 rw - cifs //nas/other rw\n");
    const QString path = Text(R"(\\nas\mail\a)");
    EXPECT_EQ(FindInMountTable(path, table), Text("/mnt/mail/a"));
    for (const char* cover : {"/", "/mnt", "/mnt/mail"}) {
        const QString line = Text("50 40 0:60 / %1 rw - tmpfs none rw\n").arg(Text(cover));
        EXPECT_EQ(FindInMountTable(path, table + line), QString()) << cover;
    }
    for (const char* beside : {"/mnt/mail/a", "/mnt/mai", "/mnt/mail2", "/mnt/mail3"}) {
        const QString line = Text("50 40 0:60 / %1 rw - tmpfs none rw\n").arg(Text(beside));
        EXPECT_EQ(FindInMountTable(path, table + line), Text("/mnt/mail/a")) << beside;
    }
    const QString again = Text("50 22 0:60 / /mnt rw - tmpfs none rw\n"
                               "51 50 0:61 / /mnt/mail rw - cifs //nas/mail rw\n");
    EXPECT_EQ(FindInMountTable(path, table + again), Text("/mnt/mail/a"));
    const QString another = Text("50 40 0:60 / /mnt/mail rw - cifs //nas/third rw\n");
    EXPECT_EQ(FindInMountTable(path, table + another), QString());
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\third\a)"), table + another), Text("/mnt/mail/a"));
}

TEST(UncPath, ARootThatTheTableNamesAfterItsMountsCoversNothing) {
    const QString table = Text("40 23 0:50 / /mnt/mail rw - cifs //nas/mail rw\n"
                               "23 22 8:2 / /mnt rw - ext4 /dev/sda2 rw\n"
                               "22 1 8:1 / / rw - ext4 /dev/sda1 rw\n");
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\mail\a)"), table), Text("/mnt/mail/a"));
    const QString circle = Text("40 41 0:50 / /mnt/mail rw - cifs //nas/mail rw\n"
                                "41 40 0:51 / /mnt/other rw - tmpfs none rw\n"
                                "42 1 0:52 / /mnt rw - tmpfs none rw\n");
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\mail\a)"), circle), QString());
}

TEST(UncPath, OfTwoPlacesTheMountItselfIsPreferredThenTheLaterOne) {
    const char* const whole = "40 22 0:50 / /mnt/whole rw - cifs //nas/mail/spam rw\n";
    const char* const part = "41 22 0:51 /spam /mnt/part rw - cifs //nas/mail rw\n";
    const char* const later = "42 22 0:52 / /mnt/later rw - cifs //nas/mail/spam rw\n";
    const QString path = Text(R"(\\nas\mail\spam\a)");
    EXPECT_EQ(FindInMountTable(path, Text(whole) + Text(part)), Text("/mnt/whole/a"));
    EXPECT_EQ(FindInMountTable(path, Text(part) + Text(whole)), Text("/mnt/whole/a"));
    EXPECT_EQ(FindInMountTable(path, Text(part)), Text("/mnt/part/a"));
    EXPECT_EQ(FindInMountTable(path, Text(whole) + Text(part) + Text(later)), Text("/mnt/later/a"));
}

TEST(UncPath, DotsNeverLeadAboveTheShare) {
    const auto found = [](const char* path) { return FindInMountTable(Text(path), Text(mountTable)); };
    EXPECT_EQ(found(R"(\\nas\mail\.\a\.\)"), Text("/mnt/mail/a/"));
    EXPECT_EQ(found(R"(\\nas\mail\a\..\b)"), Text("/mnt/mail/b"));
    EXPECT_EQ(found(R"(\\nas\mail\..\..\..\etc\passwd)"), Text("/mnt/mail/etc/passwd"));
    EXPECT_EQ(found(R"(\\nas\mail\a/../../x)"), Text("/mnt/mail/x"));
    EXPECT_EQ(found(R"(\\nas\mail\..)"), Text("/mnt/mail"));
    // The nearest mount is that of the folder which is meant, not of one that is only passed.
    EXPECT_EQ(found(R"(\\nas\mail\spam\2024\..\x)"), Text("/mnt/mail/spam/x"));
    EXPECT_EQ(found(R"(\\nas\mail\spam\x\..\2024\y)"), Text("/mnt/deep/y"));
    EXPECT_EQ(found(R"(\\nas\..\mail)"), QString());
    EXPECT_EQ(found(R"(\\..\nas\mail)"), QString());
    const QStringList mounts{Text("smb-share:server=nas,share=mail")};
    EXPECT_EQ(FindInShareMounts(Text(R"(\\nas\mail\..\..\a\.)"), Text("/gvfs"), mounts),
              Text("/gvfs/smb-share:server=nas,share=mail/a"));
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

TEST(UncPath, FolderWithAllServers) {
    const QString table = Text(mountTable) + Text("46 22 0:56 / /home/joe/net rw - fuse.smbnetfs smbnetfs rw\n");
    EXPECT_EQ(FindInNetworkFolder(Text(R"(\\nas\other\a)"), table), Text("/home/joe/net/nas/other/a"));
    EXPECT_EQ(FindInNetworkFolder(Text(R"(\\nas\other\)"), table), Text("/home/joe/net/nas/other/"));
    EXPECT_EQ(FindInNetworkFolder(Text(R"(\\nas\other\..\..\..\a)"), table), Text("/home/joe/net/nas/other/a"));
    EXPECT_EQ(FindInNetworkFolder(Text(R"(\\..\other\a)"), table), QString());
    EXPECT_EQ(FindInNetworkFolder(Text(R"(\\nas\..\a)"), table), QString());
    EXPECT_EQ(FindInNetworkFolder(Text(R"(\\nas\other\a)"), Text(mountTable)), QString());
}

TEST(UncPath, AFolderWithAllServersHasNamesAsInAUrl) {
    const QString table = Text("46 22 0:56 / /net rw - fuse.smbnetfs smbnetfs rw\n");
    const auto found = [&table](const char* path) { return FindInNetworkFolder(Text(path), table).toStdString(); };
    EXPECT_EQ(found(R"(\\nas\mail\100 % spam\)"), "/net/nas/mail/100 %25 spam/");
    EXPECT_EQ(found(R"(\\nas\m%il\joe@home\x%40y\)"), "/net/nas/m%25il/joe%40home/x%2540y/");
    EXPECT_EQ(found(R"(\\nas:1445\m:l\a:b\)"), "/net/nas:1445/m%3Al/a%3Ab/");
    EXPECT_EQ(found(R"(\\joe@nas%\mail\)"), "/net/joe%40nas%25/mail/");
    EXPECT_EQ(found(R"(\\nas\m@il)"), "/net/nas/m%40il");
    // A file is called what its folder shows.
    EXPECT_EQ(found(R"(\\nas\mail\a@b\x%40y.EML)"), "/net/nas/mail/a%40b/x%40y.EML");
    EXPECT_EQ(found(R"(\\nas\mail\a@b\../c@d/x%40y.EML)"), "/net/nas/mail/c%40d/x%40y.EML");
    EXPECT_EQ(found(R"(\\nas\mail\a@b\c\..)"), "/net/nas/mail/a%40b");
    EXPECT_EQ(found(R"(\\nas\mail\a@b\.)"), "/net/nas/mail/a%40b");
    // Where the kernel mounts shares, every name is its own.
    EXPECT_EQ(FindInMountTable(Text(R"(\\nas\mail\a@b\100%\)"), Text(mountTable)), Text("/mnt/mail/a@b/100%/"));
}

} // namespace

} // namespace quellbox
