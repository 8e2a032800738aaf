#include "platform/FolderListing.h"

#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"
#include "tests/support/MemoryFileSystem.h"

#include <QTemporaryDir>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <future>

namespace quellbox {

namespace {

using namespace std::chrono_literals;

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

QStringList Names(const std::vector<FileEntry>& entries) {
    QStringList names;
    for (const FileEntry& entry : entries) {
        names += entry.name;
    }
    return names;
}

class FolderListingTest : public testing::Test {
protected:
    QStringList List() { return Names(FilesByArrival(files_, Text("/mail/"), pool_)); }

    MemoryFileSystem files_;
    QThreadPool pool_;
};

TEST_F(FolderListingTest, OrderIsTimeThenName) {
    files_.Add(Text("/mail/c.EML"), "x", 5);
    files_.Add(Text("/mail/b.EML"), "x", 6);
    files_.Add(Text("/mail/B.EML"), "x", 6);
    files_.Add(Text("/mail/a.EML"), "x", 7);
    files_.Add(Text("/mail/old.EML"), "x", -1);
    const QStringList expected{Text("old.EML"), Text("c.EML"), Text("B.EML"), Text("b.EML"), Text("a.EML")};
    EXPECT_EQ(List(), expected);
}

TEST_F(FolderListingTest, EmptyFolderGivesNothing) {
    files_.AddFolder(Text("/mail"));
    EXPECT_EQ(List(), QStringList());
}

TEST_F(FolderListingTest, MissingFolderIsAnError) {
    EXPECT_THROW(List(), FileError);
}

TEST_F(FolderListingTest, StatusComesWithTheName) {
    files_.Add(Text("/mail/a.EML"), "four", 99);
    const std::vector<FileEntry> entries = FilesByArrival(files_, Text("/mail/"), pool_);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].status.size, 4);
    EXPECT_EQ(entries[0].status.modifiedNs, 99);
}

TEST_F(FolderListingTest, VanishedFileIsLeftOut) {
    for (int index = 0; index < 20; ++index) {
        files_.Add(Text("/mail/") + QString::number(index), "x", index);
    }
    files_.FailPath(Text("/mail/0"), Text("gone"));
    files_.FailPath(Text("/mail/19"), Text("gone"));
    const QStringList names = List();
    EXPECT_EQ(names.size(), 18);
    EXPECT_EQ(names.front(), Text("1"));
    EXPECT_EQ(names.back(), Text("18"));
}

/// Around the number of files that are measured, and around what a thread claims at once.
class FolderListingCount : public FolderListingTest, public testing::WithParamInterface<int> {};

TEST_P(FolderListingCount, EveryFileIsListedOnce) {
    QStringList expected;
    for (int index = 0; index < GetParam(); ++index) {
        const QString name = QString::number(index);
        files_.Add(Text("/mail/") + name, "x", index);
        expected += name;
    }
    files_.AddFolder(Text("/mail"));
    EXPECT_EQ(List(), expected);
    EXPECT_EQ(files_.CallCount(), GetParam() + 1);
}

INSTANTIATE_TEST_SUITE_P(Boundaries, FolderListingCount, testing::Values(0, 1, 7, 8, 9, 71, 72, 73, 1000));

/// Each file whose number is a multiple of the parameter is one of which the folder tells no status.
class FolderThatTellsStatus : public FolderListingTest, public testing::WithParamInterface<int> {};

TEST_P(FolderThatTellsStatus, SparesTheLooks) {
    constexpr int count = 200;
    QStringList expected;
    int looks = 0;
    for (int index = 0; index < count; ++index) {
        const QString name = QString::number(index);
        files_.Add(Text("/mail/") + name, "four", index);
        expected += name;
        looks += index % GetParam() == 0 ? 1 : 0;
    }
    files_.LetFoldersTellStatus([](const QString& name) { return name.toInt() % GetParam() != 0; });
    const std::vector<FileEntry> entries = FilesByArrival(files_, Text("/mail/"), pool_);
    EXPECT_EQ(Names(entries), expected);
    EXPECT_EQ(entries.back().status.size, 4);
    EXPECT_EQ(entries.back().status.modifiedNs, count - 1);
    EXPECT_EQ(files_.CallCount(), looks + 1);
}

INSTANTIATE_TEST_SUITE_P(Links, FolderThatTellsStatus, testing::Values(1, 2, 25, 199, 200));

TEST_F(FolderListingTest, FolderThatTellsEveryStatusIsTheOnlyCallAndNeedsNoThread) {
    for (int index = 0; index < 200; ++index) {
        files_.Add(Text("/mail/") + QString::number(index), "x", index);
    }
    files_.LetFoldersTellStatus([](const QString&) { return true; });
    files_.SetLatency(1ms);
    pool_.setMaxThreadCount(1);
    EXPECT_EQ(List().size(), 200);
    EXPECT_EQ(files_.CallCount(), 1);
    EXPECT_EQ(pool_.maxThreadCount(), 1);
}

TEST_F(FolderListingTest, VanishedFileIsLeftOutAlsoWhereTheFolderTellsOfOthers) {
    for (const char* name : {"link", "plain"}) {
        files_.Add(Text("/mail/") + Text(name), "x", 1);
    }
    files_.LetFoldersTellStatus([](const QString& name) { return name == Text("plain"); });
    files_.FailPath(Text("/mail/link"), Text("gone"));
    EXPECT_EQ(List(), QStringList{Text("plain")});
}

TEST_F(FolderListingTest, SlowFolderIsReadByManyThreads) {
    for (int index = 0; index < 200; ++index) {
        files_.Add(Text("/mail/") + QString::number(index), "x", index);
    }
    files_.SetLatency(1ms);
    pool_.setMaxThreadCount(1);
    EXPECT_EQ(List().size(), 200);
    EXPECT_GE(pool_.maxThreadCount(), 64);
}

TEST_F(FolderListingTest, BusyPoolIsNotWaitedFor) {
    for (int index = 0; index < 500; ++index) {
        files_.Add(Text("/mail/") + QString::number(index), "x", index);
    }
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    const int busy = std::max(2, QThread::idealThreadCount());
    pool_.setMaxThreadCount(busy);
    for (int index = 0; index < busy; ++index) {
        pool_.start([released] { released.wait(); });
    }
    EXPECT_EQ(List().size(), 500);
    release.set_value();
    pool_.waitForDone();
}

TEST_F(FolderListingTest, MayRunInThePoolItself) {
    for (int index = 0; index < 500; ++index) {
        files_.Add(Text("/mail/") + QString::number(index), "x", index);
    }
    pool_.setMaxThreadCount(1);
    QStringList names;
    pool_.start([&] { names = List(); });
    pool_.waitForDone();
    EXPECT_EQ(names.size(), 500);
}

TEST_F(FolderListingTest, RealFolderIsInOrderOfArrival) {
    const QTemporaryDir folder;
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    const QString prefix = folder.path() + QLatin1Char('/');
    for (const char* name : {"z.EML", "m.EML", "a.EML"}) {
        files->WriteWhole(prefix + Text(name), "x");
        // The clock of a file system ticks every few milliseconds only.
        QThread::msleep(20);
    }
    const QStringList expected{Text("z.EML"), Text("m.EML"), Text("a.EML")};
    EXPECT_EQ(Names(FilesByArrival(*files, prefix, pool_)), expected);
}

} // namespace

} // namespace quellbox
