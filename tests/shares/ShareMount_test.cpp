#include "platform/LocalFileSystem.h"
#include "platform/MountTable.h"
#include "platform/PathBytes.h"
#include "platform/RuntimeError.h"
#include "tests/shares/ShareWorld.h"
#include "tests/support/FileNames.h"

#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>

namespace quellbox {

namespace {

/// The server and the clients themselves, apart from the program.
class ShareMountTest : public testing::TestWithParam<ShareClient> {
protected:
    void Begin(SambaServer::Access access) {
        world_ = std::make_unique<ShareWorld>(GetParam(), access);
        if (!world_->WhyNot().isEmpty()) {
            GTEST_SKIP() << world_->WhyNot().toStdString();
        }
    }

    QString Mounted(const char* name) const {
        return world_->Mount().Folder(QStringLiteral("archive")) + QLatin1String(name);
    }
    QString Behind(const char* name) const {
        return world_->Server().RealFolder(QStringLiteral("archive")) + QLatin1String(name);
    }

    /// Whether what is written on one side is read on the other.
    void ExpectPassage() {
        files_->WriteWhole(Behind("a.eml"), "from the server");
        EXPECT_EQ(ReadWhole(*files_, Mounted("a.eml")), "from the server");
        files_->WriteWhole(Mounted("b.eml"), "from the client");
        EXPECT_EQ(ReadWhole(*files_, Behind("b.eml")), "from the client");
    }

    /// What a file holds; nothing where it cannot be read.
    QByteArray Contents(const QString& path) const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
    std::unique_ptr<ShareWorld> world_;
};

} // namespace

TEST_P(ShareMountTest, ShowsAShareToGuests) {
    ASSERT_NO_FATAL_FAILURE(Begin(SambaServer::Access::Guest));
    if (!IsSkipped()) {
        ExpectPassage();
    }
}

TEST_P(ShareMountTest, ShowsAShareToWhoKnowsThePassword) {
    ASSERT_NO_FATAL_FAILURE(Begin(SambaServer::Access::Password));
    if (!IsSkipped()) {
        ExpectPassage();
    }
}

TEST_P(ShareMountTest, ShowsTheShareAgainAfterTheServerWasKilled) {
    ASSERT_NO_FATAL_FAILURE(Begin(SambaServer::Access::Guest));
    if (IsSkipped()) {
        return;
    }
    ExpectPassage();
    world_->Server().Kill();
    EXPECT_THROW(ReadWhole(*files_, Mounted("a.eml")), FileError);
    ASSERT_TRUE(world_->Server().StartAgain()) << world_->Server().WhyNot().toStdString();
    ASSERT_TRUE(world_->Mount().Reconnect());
    EXPECT_TRUE(WaitUntil([this] { return Contents(Mounted("a.eml")) == "from the server"; }));
}

TEST_P(ShareMountTest, CountsTheRequestsOfAClient) {
    ASSERT_NO_FATAL_FAILURE(Begin(SambaServer::Access::Guest));
    if (IsSkipped()) {
        return;
    }
    ExpectPassage();
    const std::map<QByteArray, int> before = world_->Server().Requests();
    ReadWhole(*files_, Mounted("a.eml"));
    const std::map<QByteArray, int> after = world_->Server().Requests();
    EXPECT_GE(after.at("read"), before.at("read") + 1);
    EXPECT_EQ(after.at("write"), before.at("write"));
}

TEST_P(ShareMountTest, LeavesNothingMounted) {
    ASSERT_NO_FATAL_FAILURE(Begin(SambaServer::Access::Guest));
    if (IsSkipped()) {
        return;
    }
    const QString folder = Mounted("");
    const auto isMounted = [&folder] {
        QFile table(QStringLiteral("/proc/self/mountinfo"));
        const std::vector<Mount> mounts =
            ParseMountTable(table.open(QIODevice::ReadOnly) ? PathText(table.readAll()) : QString());
        return std::any_of(mounts.begin(), mounts.end(), [&folder](const Mount& mount) {
            return mount.type.startsWith(QLatin1String("fuse.")) && IsAtOrAbove(mount.point, folder);
        });
    };
    EXPECT_TRUE(isMounted());
    world_.reset();
    EXPECT_FALSE(isMounted());
}

INSTANTIATE_TEST_SUITE_P(SmbNetFs, ShareMountTest, testing::Values(ShareClient::SmbNetFs));
INSTANTIATE_TEST_SUITE_P(Desktop, ShareMountTest, testing::Values(ShareClient::Desktop));

} // namespace quellbox
