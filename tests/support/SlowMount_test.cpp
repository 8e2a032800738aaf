#ifdef __linux__

#include "tests/support/SlowMount.h"

#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"
#include "tests/support/FileNames.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace quellbox {

namespace {

class SlowMountTest : public testing::Test {
protected:
    void Mount(const SlowMount::Traits& traits) {
        mount_ = std::make_unique<SlowMount>(traits);
        if (!mount_->IsMounted()) {
            GTEST_SKIP() << mount_->WhyNot().toStdString();
        }
        QDir(mount_->RealFolder()).mkdir(QStringLiteral("archive"));
        QDir(mount_->RealFolder()).mkdir(QStringLiteral("pickup"));
    }

    QString Archive(const char* name = "") const {
        return mount_->Folder() + QStringLiteral("archive/") + QLatin1String(name);
    }
    QString Pickup(const char* name = "") const {
        return mount_->Folder() + QStringLiteral("pickup/") + QLatin1String(name);
    }

    /// A file that the mounted folder has not been asked for yet.
    void AddBehind(const char* name, const QByteArray& bytes) {
        QFile file(mount_->RealFolder() + QStringLiteral("archive/") + QLatin1String(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    bool WaitForHanging(int count) {
        for (int look = 0; look < 12'000; ++look) {
            if (mount_->Counts()["hanging"] == count) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return false;
    }

    static int ErrorOf(int result) { return result < 0 ? errno : 0; }

    std::unique_ptr<SlowMount> mount_;
    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
};

TEST_F(SlowMountTest, PassesEverythingToTheRealFolder) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    AddBehind("a.eml", "first");
    files_->WriteWhole(Archive("b.eml"), "second");
    QStringList names = FileNames(*files_, Archive());
    names.sort();
    EXPECT_EQ(names.join(QLatin1Char(' ')).toStdString(), "a.eml b.eml");
    EXPECT_EQ(ReadWhole(*files_, Archive("a.eml")), "first");
    EXPECT_EQ(files_->Status(Archive("b.eml")).value_or(FileStatus{}).size, 6);
    files_->Move(Archive("a.eml"), Pickup("a.eml"));
    files_->Remove(Archive("b.eml"));
    EXPECT_TRUE(QFile::exists(mount_->RealFolder() + QStringLiteral("pickup/a.eml")));
    EXPECT_TRUE(FileNames(*files_, mount_->RealFolder() + QStringLiteral("archive")).isEmpty());
}

TEST_F(SlowMountTest, CountsTheCallsOfTheKernel) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    AddBehind("a.eml", "first");
    std::map<QByteArray, int> before = mount_->Counts();
    files_->Remove(Archive("a.eml"));
    std::map<QByteArray, int> after = mount_->Counts();
    EXPECT_EQ(after["unlink"] - before["unlink"], 1);
    EXPECT_EQ(after["rename"] - before["rename"], 0);
}

TEST_F(SlowMountTest, IsPoorWhenAsked) {
    SlowMount::Traits traits;
    traits.poor = true;
    ASSERT_NO_FATAL_FAILURE(Mount(traits));
    if (IsSkipped()) {
        return;
    }
    AddBehind("a.eml", "first");
    AddBehind("b.eml", "second");
    const QByteArray from = QFile::encodeName(Archive("a.eml"));
    const QByteArray to = QFile::encodeName(Pickup("a.eml"));
    EXPECT_EQ(ErrorOf(::link(from.constData(), to.constData())), EPERM);
    EXPECT_EQ(ErrorOf(::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE)), EINVAL);
    files_->Move(Archive("a.eml"), Pickup("a.eml"));
    EXPECT_THROW(files_->Move(Archive("b.eml"), Pickup("a.eml")), FileError);
    EXPECT_EQ(ReadWhole(*files_, Pickup("a.eml")), "first");
    EXPECT_EQ(ReadWhole(*files_, Archive("b.eml")), "second");
}

TEST_F(SlowMountTest, LetsCallsHangUntilTheRuleIsTakenBack) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    AddBehind("a.eml", "first");
    AddBehind("b.eml", "second");
    mount_->SetRules("hang open a.eml\n");
    std::atomic<bool> isRead = false;
    std::thread reader([&] {
        ReadWhole(*files_, Archive("a.eml"));
        isRead = true;
    });
    EXPECT_TRUE(WaitForHanging(1));
    EXPECT_EQ(ReadWhole(*files_, Archive("b.eml")), "second") << "another file does not wait";
    EXPECT_FALSE(isRead);
    mount_->SetRules({});
    reader.join();
    EXPECT_TRUE(isRead);
    EXPECT_TRUE(WaitForHanging(0));
}

TEST_F(SlowMountTest, LetsManyCallersWaitAtTheSameTime) {
    constexpr int callers = 64;
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    mount_->SetRules("hang lookup *\n");
    std::vector<std::thread> threads;
    for (int caller = 0; caller < callers; ++caller) {
        threads.emplace_back([&, caller] { files_->Status(mount_->Folder() + QString::number(caller)); });
    }
    EXPECT_TRUE(WaitForHanging(callers));
    mount_->SetRules({});
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(SlowMountTest, UnmountsAlthoughACallHangs) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    AddBehind("a.eml", "first");
    mount_->SetRules("hang unlink *\n");
    std::atomic<bool> failed = false;
    std::thread remover([&] {
        try {
            files_->Remove(Archive("a.eml"));
        } catch (const FileError&) {
            failed = true;
        }
    });
    EXPECT_TRUE(WaitForHanging(1));
    mount_.reset();
    remover.join();
    EXPECT_TRUE(failed);
}

} // namespace

} // namespace quellbox

#endif
