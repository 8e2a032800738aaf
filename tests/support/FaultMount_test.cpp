#ifdef __linux__

#include "tests/support/FaultMount.h"

#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"
#include "tests/support/FileNames.h"
#include "tests/support/RunUntil.h"

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

class FaultMountTest : public testing::Test {
protected:
    void Mount(const FaultMount::Traits& traits) {
        mount_ = std::make_unique<FaultMount>(traits);
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

    std::unique_ptr<FaultMount> mount_;
    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
};

TEST_F(FaultMountTest, PassesEverythingToTheRealFolder) {
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

TEST_F(FaultMountTest, CountsTheCallsOfTheKernel) {
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

TEST_F(FaultMountTest, IsPoorWhenAsked) {
    ASSERT_NO_FATAL_FAILURE(Mount(FaultMount::Poor()));
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

TEST_F(FaultMountTest, LetsCallsHangUntilTheRuleIsTakenBack) {
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

TEST_F(FaultMountTest, LetsACallHangForATime) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    AddBehind("a.eml", "first");
    mount_->SetRules("hang unlink * call=1 ms=20\n");
    EXPECT_TRUE(files_->Remove(Archive("a.eml")));
    EXPECT_EQ(mount_->Counts()["came-true"], 1);
    EXPECT_FALSE(QFile::exists(mount_->RealFolder() + QStringLiteral("archive/a.eml")));
}

TEST_F(FaultMountTest, FailsTheCallsThatARuleNames) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    const QByteArray path = QFile::encodeName(Archive("a.eml"));
    const auto failures = [&](const QByteArray& rule) {
        mount_->SetRules(rule);
        QByteArray errors;
        for (int time = 0; time < 3; ++time) {
            AddBehind("a.eml", "first");
            errors += QByteArray::number(ErrorOf(::unlink(path.constData()))) + ' ';
        }
        return errors.trimmed();
    };
    const QByteArray busy = QByteArray::number(EBUSY);
    EXPECT_EQ(failures("fail unlink * error=EBUSY call=2\n"), "0 " + busy + " 0");
    EXPECT_EQ(failures("fail unlink * error=EBUSY call=2\n"), "0 " + busy + " 0") << "the same rule once more";
    EXPECT_EQ(failures("fail rename,unlink a.eml error=EBUSY from=2\n"), "0 " + busy + ' ' + busy);
    EXPECT_EQ(failures("fail unlink b.eml\nfail rename *\n"), "0 0 0");
    EXPECT_EQ(failures("fail unlink * call=2\nfail unlink * error=EBUSY then\n"),
              "0 " + QByteArray::number(EIO) + ' ' + busy);
    EXPECT_EQ(failures({}), "0 0 0");
}

/// The kernel remembers for a while what it was not told otherwise.
TEST_F(FaultMountTest, LosesAnswers) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    AddBehind("a.eml", "first");
    const QByteArray from = QFile::encodeName(Archive("a.eml"));
    const QByteArray to = QFile::encodeName(Pickup("a.eml"));
    mount_->SetRules("lose rename * error=ETIMEDOUT\n");
    EXPECT_EQ(ErrorOf(::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE)), ETIMEDOUT);
    EXPECT_TRUE(QFile::exists(mount_->RealFolder() + QStringLiteral("pickup/a.eml")));
    EXPECT_TRUE(QFile::exists(Archive("a.eml"))) << "as the kernel remembers";
    EXPECT_EQ(ErrorOf(::open(from.constData(), O_RDONLY)), ENOENT) << "as the server says";
}

TEST_F(FaultMountTest, CutsOffWrites) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    mount_->SetRules("cut write * call=1\n");
    const int file = ::open(QFile::encodeName(Archive("a.eml")).constData(), O_WRONLY | O_CREAT, 0600);
    ASSERT_GE(file, 0);
    EXPECT_EQ(::write(file, "1234567890", 10), 5);
    EXPECT_EQ(ErrorOf(static_cast<int>(::write(file, "67890", 5))), EIO);
    ::close(file);
    EXPECT_NO_THROW(files_->WriteWhole(Archive("b.eml"), "another file"));
}

TEST_F(FaultMountTest, FillsUp) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    mount_->SetRules("fill write,create * bytes=15\n");
    const int file = ::open(QFile::encodeName(Archive("a.eml")).constData(), O_WRONLY | O_CREAT, 0600);
    ASSERT_GE(file, 0);
    EXPECT_EQ(::write(file, "1234567890", 10), 10);
    EXPECT_EQ(::write(file, "1234567890", 10), 5);
    EXPECT_EQ(ErrorOf(static_cast<int>(::write(file, "67890", 5))), ENOSPC);
    ::close(file);
    EXPECT_EQ(ErrorOf(::open(QFile::encodeName(Archive("b.eml")).constData(), O_WRONLY | O_CREAT, 0600)), ENOSPC);
}

TEST_F(FaultMountTest, HasTwoSharesThatRefuseWhatIsOpen) {
    ASSERT_NO_FATAL_FAILURE(Mount(FaultMount::TwoShares()));
    if (IsSkipped()) {
        return;
    }
    AddBehind("a.eml", "first");
    const QByteArray from = QFile::encodeName(Archive("a.eml"));
    EXPECT_EQ(ErrorOf(::rename(from.constData(), QFile::encodeName(Pickup("a.eml")).constData())), EXDEV);
    const int file = ::open(from.constData(), O_RDONLY);
    EXPECT_EQ(ErrorOf(::unlink(from.constData())), EBUSY);
    EXPECT_EQ(ErrorOf(::rename(from.constData(), QFile::encodeName(Archive("b.eml")).constData())), EBUSY);
    ::close(file);
    EXPECT_TRUE(RunUntil([&] { return ::unlink(from.constData()) == 0 || errno == ENOENT; }))
        << "the kernel does not wait until it is closed";
}

TEST_F(FaultMountTest, IsLikeTheKernelsClientWhenAsked) {
    ASSERT_NO_FATAL_FAILURE(Mount(FaultMount::LikeKernelClient()));
    if (IsSkipped()) {
        return;
    }
    AddBehind("a.eml", "first");
    const QByteArray from = QFile::encodeName(Archive("a.eml"));
    const QByteArray to = QFile::encodeName(Pickup("a.eml"));
    EXPECT_EQ(ErrorOf(::link(from.constData(), to.constData())), EPERM);
    EXPECT_EQ(ErrorOf(::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE)), 0);
}

TEST_F(FaultMountTest, CountsMessagesThatAreSeenIncomplete) {
    FaultMount::Traits traits;
    traits.ending = "end";
    ASSERT_NO_FATAL_FAILURE(Mount(traits));
    if (IsSkipped()) {
        return;
    }
    files_->WriteWhole(Archive("a.EML"), "the end");
    EXPECT_EQ(mount_->Counts()["incomplete"], 0);
    const int file = ::open(QFile::encodeName(Archive("b.EML")).constData(), O_WRONLY | O_CREAT, 0600);
    EXPECT_EQ(mount_->Counts()["incomplete"], 1) << "created under this name";
    EXPECT_EQ(::write(file, "the e", 5), 5);
    EXPECT_EQ(::write(file, "nd", 2), 2);
    ::close(file);
    EXPECT_EQ(mount_->Counts()["incomplete"], 2);
}

TEST_F(FaultMountTest, DiesAndIsMountedAgain) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    for (const char* rule : {"die unlink *\n", "die-after unlink *\n"}) {
        AddBehind("a.eml", "first");
        mount_->SetRules(rule);
        const QByteArray path = QFile::encodeName(Archive("a.eml"));
        EXPECT_NE(ErrorOf(::unlink(path.constData())), 0);
        EXPECT_EQ(ErrorOf(::unlink(path.constData())), ENOTCONN);
        EXPECT_TRUE(RunUntil([&] { return mount_->HasEnded(); }));
        mount_->MountAgain();
        EXPECT_EQ(files_->FileExists(Archive("a.eml")), QByteArray(rule).startsWith("die unlink"));
    }
    mount_->Kill();
    EXPECT_THROW(files_->Entries(Archive()), FileError);
    mount_->MountAgain();
    EXPECT_NO_THROW(files_->Entries(Archive()));
}

TEST_F(FaultMountTest, IsTakenAwayAndMountedAgain) {
    ASSERT_NO_FATAL_FAILURE(Mount({}));
    if (IsSkipped()) {
        return;
    }
    AddBehind("a.eml", "first");
    mount_->SetRules("unmount lookup a.eml call=1\n");
    files_->FileExists(Archive("a.eml"));
    EXPECT_FALSE(files_->FolderExists(Archive()));
    mount_->MountAgain();
    EXPECT_TRUE(files_->FileExists(Archive("a.eml")));
}

TEST_F(FaultMountTest, LetsManyCallersWaitAtTheSameTime) {
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

TEST_F(FaultMountTest, UnmountsAlthoughACallHangs) {
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
