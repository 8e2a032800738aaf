#include "platform/FolderListing.h"

#include "platform/LocalFileSystem.h"
#include "platform/RuntimeError.h"
#include "tests/support/CallGate.h"
#include "tests/support/ListedFolder.h"
#include "tests/support/MemoryFileSystem.h"

#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

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
    std::vector<FileEntry> Entries() { return ListedFolder(files_, Text("/mail/"), pool_).files; }
    QStringList List() { return Names(Entries()); }

    MemoryFileSystem files_;
    ThreadWorkPool pool_;
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
    const Listing listing = ListedFolder(files_, Text("/mail/"), pool_);
    EXPECT_TRUE(listing.exists);
    EXPECT_TRUE(listing.error.isEmpty());
    EXPECT_TRUE(listing.files.empty());
}

TEST_F(FolderListingTest, MissingFolderDoesNotExist) {
    const Listing listing = ListedFolder(files_, Text("/mail/"), pool_);
    EXPECT_FALSE(listing.exists);
    EXPECT_TRUE(listing.files.empty());
}

TEST_F(FolderListingTest, UnreadableFolderSaysWhy) {
    class Unreadable : public MemoryFileSystem {
    public:
        std::vector<FolderEntry> Entries(const QString& folder) const override {
            throw FileError(folder, Text("Permission denied"));
        }
    } files;
    files.AddFolder(Text("/mail"));
    const Listing listing = ListedFolder(files, Text("/mail/"), pool_);
    EXPECT_TRUE(listing.exists);
    EXPECT_EQ(listing.error, Text("/mail/: Permission denied"));
}

TEST_F(FolderListingTest, AFolderWhoseServerDoesNotAnswerIsNotSaidToBeMissing) {
    class Dead : public MemoryFileSystem {
    public:
        bool FolderExists(const QString&) const override { return false; }
        std::vector<FolderEntry> Entries(const QString& folder) const override {
            throw FileError(folder, Text("Transport endpoint is not connected"), FileProblem::NoAnswer);
        }
    } files;
    const Listing listing = ListedFolder(files, Text("/mail/"), pool_);
    EXPECT_TRUE(listing.exists);
    EXPECT_TRUE(listing.isUnanswered);
    EXPECT_EQ(listing.error, Text("/mail/: Transport endpoint is not connected"));
}

TEST_F(FolderListingTest, StatusComesWithTheName) {
    files_.Add(Text("/mail/a.EML"), "four", 99);
    const std::vector<FileEntry> entries = Entries();
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
    EXPECT_EQ(files_.CallCount(), GetParam() + 2);
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
    const std::vector<FileEntry> entries = Entries();
    EXPECT_EQ(Names(entries), expected);
    EXPECT_EQ(entries.back().status.size, 4);
    EXPECT_EQ(entries.back().status.modifiedNs, count - 1);
    EXPECT_EQ(files_.CallCount(), looks + 2);
}

INSTANTIATE_TEST_SUITE_P(Links, FolderThatTellsStatus, testing::Values(1, 2, 25, 199, 200));

TEST_F(FolderListingTest, FolderThatTellsEveryStatusNeedsNoOtherCall) {
    for (int index = 0; index < 200; ++index) {
        files_.Add(Text("/mail/") + QString::number(index), "x", index);
    }
    files_.LetFoldersTellStatus([](const QString&) { return true; });
    EXPECT_EQ(List().size(), 200);
    EXPECT_EQ(files_.CallCount(), 2) << "whether it exists, and what it holds";
}

TEST_F(FolderListingTest, VanishedFileIsLeftOutAlsoWhereTheFolderTellsOfOthers) {
    for (const char* name : {"link", "plain"}) {
        files_.Add(Text("/mail/") + Text(name), "x", 1);
    }
    files_.LetFoldersTellStatus([](const QString& name) { return name == Text("plain"); });
    files_.FailPath(Text("/mail/link"), Text("gone"));
    EXPECT_EQ(List(), QStringList{Text("plain")});
}

TEST_F(FolderListingTest, DroppedItWaitsForNothing) {
    files_.AddFolder(Text("/mail"));
    CallGate gate;
    class Stalling : public MemoryFileSystem {
    public:
        explicit Stalling(CallGate& gate) : gate_(gate) {}
        bool FolderExists(const QString& folder) const override {
            gate_.Pass(0);
            return MemoryFileSystem::FolderExists(folder);
        }

    private:
        CallGate& gate_;
    } files(gate);
    {
        FolderListing listing(files, pool_, Text("/mail/"), [](const Listing&) { FAIL() << "nobody waits for it"; });
        listing.Start();
        ASSERT_TRUE(gate.WaitForInside(1));
    }
    gate.LetAll();
    pool_.WaitForDone();
    QCoreApplication::processEvents();
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
    EXPECT_EQ(Names(ListedFolder(*files, prefix, pool_).files), expected);
}

} // namespace

} // namespace quellbox
