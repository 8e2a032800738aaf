#include "platform/MountTable.h"

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

/// Those of a desktop session.
std::vector<Mount> Mounts() {
    return ParseMountTable(Text("20 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                                "21 20 0:5 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
                                "22 20 0:6 / /home/joe/net rw - fuse.smbnetfs smbnetfs rw\n"));
}

bool LieInTwo(const char* left, const char* right) {
    return LieInTwoDesktopShares(Mounts(), Text(left), Text(right));
}

} // namespace

TEST(LieInTwoDesktopShares, TellsTheSharesOfOneMountApart) {
    EXPECT_TRUE(LieInTwo("/run/user/1000/gvfs/smb-share:server=nas,share=archive",
                         "/run/user/1000/gvfs/smb-share:server=nas,share=pickup"));
    EXPECT_TRUE(LieInTwo("/run/user/1000/gvfs/smb-share:server=nas,share=archive/new",
                         "/run/user/1000/gvfs/smb-share:server=other,share=archive/new"));
    EXPECT_FALSE(LieInTwo("/run/user/1000/gvfs/smb-share:server=nas,share=archive",
                          "/run/user/1000/gvfs/smb-share:server=nas,share=archive/pickup"));
}

// The kernel itself tells other mounts apart.
TEST(LieInTwoDesktopShares, IsOnlyAboutTheDesktopsMounts) {
    EXPECT_FALSE(LieInTwo("/run/user/1000/gvfs/smb-share:server=nas,share=archive", "/home/joe"));
    EXPECT_FALSE(LieInTwo("/home/joe/net/nas/archive", "/home/joe/net/nas/pickup"));
    EXPECT_FALSE(LieInTwo("/run/user/1000/gvfs-other/a", "/run/user/1000/gvfs-other/b"));
    EXPECT_FALSE(LieInTwo("/run/user/1000/gvfs", "/run/user/1000/gvfs/smb-share:server=nas,share=archive"));
}

TEST(IsUsersShare, IsFoundByItsDevice) {
    EXPECT_TRUE(IsUsersShare(Mounts(), Text("0:5")));
    EXPECT_TRUE(IsUsersShare(Mounts(), Text("0:6")));
    EXPECT_FALSE(IsUsersShare(Mounts(), Text("8:1")));
    EXPECT_FALSE(IsUsersShare(Mounts(), Text("0:7")));
}
