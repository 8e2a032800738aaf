#include "tests/archive/ArchiveScanFixture.h"

#include "platform/LocalFileSystem.h"
#include "tests/support/RealFiles.h"

#include <atomic>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace quellbox {

using namespace Qt::StringLiterals;

TEST_F(ArchiveScanTest, HandsOverTheRowsInOrderOfArrivalAndThenOfNames) {
    AddMessage(u"c.eml"_s, 5);
    AddMessage(u"b.eml"_s, 6);
    AddMessage(u"B.eml"_s, 6);
    AddMessage(u"a.eml"_s, 7);
    AddMessage(u"old.eml"_s, -1);
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    const QStringList expected{u"old.eml"_s, u"c.eml"_s, u"B.eml"_s, u"b.eml"_s, u"a.eml"_s};
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(subjects.front(), u"About old.eml"_s);
    EXPECT_EQ(ListedNames(), expected);
    EXPECT_EQ(listed, 5);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(result.reason, QString());
}

TEST_F(ArchiveScanTest, GivesARowTheStatusThatWasListed) {
    AddMessage(u"a.eml"_s, 99);
    std::optional<FileStatus> status;
    scan->Start(request, [&status](const ReadRow& row) {
        EXPECT_TRUE(row.loaded);
        status = row.status;
    });
    WaitForEnd();
    EXPECT_EQ(status, (FileStatus{files.Bytes(archive.PathOf(u"a.eml"_s)).size(), 99}));
}

TEST_F(ArchiveScanTest, OfAnEmptyFolderHasNoRows) {
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(rows, QStringList());
    EXPECT_EQ(listed, 0);
    EXPECT_EQ(ends, 1);
}

/// Around the number of files that are looked at together, and around the ends of segments.
class ArchiveScanCount : public ArchiveScanTest, public testing::WithParamInterface<int> {};

TEST_P(ArchiveScanCount, EveryFileIsReadOnce) {
    AddMessages(GetParam());
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(rows, NumberedNames(GetParam()));
    EXPECT_EQ(files.OpenCount(), GetParam());
    EXPECT_EQ(listed, GetParam());
    EXPECT_EQ(ends, 1);
}

INSTANTIATE_TEST_SUITE_P(Boundaries, ArchiveScanCount,
                         testing::Values(1, 1023, 1024, 2047, 2049, int{ArchiveScan::segment} - 1,
                                         int{ArchiveScan::segment}, int{ArchiveScan::segment} + 1,
                                         2 * int{ArchiveScan::segment}, 2 * int{ArchiveScan::segment} + 1,
                                         3 * int{ArchiveScan::segment} + 1));

TEST_F(ArchiveScanTest, HasNoLimitOf16Bits) {
    for (int message = 0; message < 33'000; ++message) {
        files.Add(archive.PathOf(NumberedName(message)), "x", message);
    }
    request.reads = false;
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(listed, 33'000);
    EXPECT_EQ(ListedNames(), NumberedNames(33'000));
}

TEST_F(ArchiveScanTest, OpensNothingWhenOnlyTheFilesAreWanted) {
    AddMessages(3);
    request.reads = false;
    files.LetFoldersTellStatus([](const QString& name) { return name != NumberedName(1); });
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(ListedNames(), NumberedNames(3));
    EXPECT_EQ(scan->Files()->StatusAt(2).modifiedNs, 2'000'000'000);
    EXPECT_EQ(rows, QStringList());
    EXPECT_EQ(listed, 3);
    EXPECT_EQ(files.CallCount(), 3) << "whether it exists, what it holds, and the one of which it does not tell";
}

TEST_F(ArchiveScanTest, TheFilesOfAFormerScanStayWithWhoKeepsThem) {
    AddMessages(2);
    request.reads = false;
    EXPECT_EQ(scan->Files(), nullptr);
    Run();
    const std::shared_ptr<const CompactListing> former = scan->Files();
    AddMessage(u"new.eml"_s, 5'000'000'000);
    Start();
    EXPECT_EQ(scan->Files(), nullptr) << "until they are listed";
    WaitForEnd();
    EXPECT_EQ(former->Count(), 2U);
    EXPECT_EQ(former->NameAt(1), NumberedName(1));
    EXPECT_EQ(scan->Files()->Count(), 3U);
}

TEST_F(ArchiveScanTest, NeitherListsNorOpensWhatIsNotWanted) {
    AddMessages(100);
    request.wants = [](const FileEntry& file) {
        return file.name != NumberedName(50) && file.status.modifiedNs >= 10'000'000'000;
    };
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    QStringList expected = NumberedNames(100).mid(10);
    expected.removeAll(NumberedName(50));
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(ListedNames(), expected);
    EXPECT_EQ(listed, 89);
    EXPECT_EQ(files.OpenCount(), 89);
}

TEST_F(ArchiveScanTest, LeavesOutFolders) {
    AddMessages(2);
    files.AddFolder(archive.PathOf(u".quellbox"_s));
    files.AddFolder(archive.PathOf(u"folder.eml"_s));
    files.Add(archive.PathOf(u".hidden"_s), "Subject: s\r\n\r\n", -1);
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(rows, QStringList(u".hidden"_s) + NumberedNames(2)) << "as a refresh does";
}

TEST_F(ArchiveScanTest, ListsThePlacesOfAMaildir) {
    request.profile = &ProfileOf(u"maildir"_s);
    AddMessage(u"cur/2.a:2,S"_s, 2);
    AddMessage(u"new/3.a"_s, 3);
    AddMessage(u"new/1.a"_s, 1);
    AddMessage(u"tmp/0.a"_s, 0);
    AddMessage(u"index"_s, 0);
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    const QChar separator = SeparatorOf(archive);
    EXPECT_EQ(rows, (QStringList{u"new"_s + separator + u"1.a"_s, u"cur"_s + separator + u"2.a:2,S"_s,
                                 u"new"_s + separator + u"3.a"_s}));
    EXPECT_EQ(subjects.back(), u"About new/3.a"_s);
}

TEST_F(ArchiveScanTest, ListsWhatTheServersProfileTakesForMessages) {
    const ServerProfile some = [] {
        ServerProfile made = ServerProfiles().front();
        made.places.names = {{u"spam-"_s, {}}};
        made.places.listsOthers = false;
        return made;
    }();
    request.profile = &some;
    AddMessage(u"spam-1"_s, 1);
    AddMessage(u"virus-2"_s, 2);
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(rows, QStringList{u"spam-1"_s});
    EXPECT_EQ(files.OpenCount(), 1);
    pool.WaitForDone();
}

TEST_F(ArchiveScanTest, LeavesOutAFileThatHasVanishedWhenItIsLookedAt) {
    AddMessages(20);
    files.FailPath(archive.PathOf(NumberedName(0)), u"gone"_s);
    files.FailPath(archive.PathOf(NumberedName(19)), u"gone"_s);
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(rows, NumberedNames(19).mid(1));
    EXPECT_EQ(listed, 18);
}

TEST_F(ArchiveScanTest, GivesAFileThatVanishesAfterwardsARowWithTheError) {
    AddMessages(3);
    request.wants = [this](const FileEntry& file) { // which is asked between the two
        if (file.name == NumberedName(1)) {
            files.Remove(archive.PathOf(file.name));
        }
        return true;
    };
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(rows, NumberedNames(3));
    EXPECT_TRUE(subjects[1].contains(u"No such file"_s)) << subjects[1].toStdString();
    EXPECT_EQ(subjects[2], u"About 000002.eml"_s);
}

TEST_F(ArchiveScanTest, DoesNotReadMoreThanTwoSegmentsAheadOfWhoTakesThem) {
    constexpr int count = 5 * int{ArchiveScan::segment};
    AddMessages(count);
    int mostAhead = 0;
    int taken = 0;
    scan->Start(request, [&](const ReadRow&) {
        if (taken % 1000 == 0) {
            pool.WaitForDone(); // all that is read without this row being taken
        }
        mostAhead = std::max(mostAhead, files.OpenCount() - taken);
        ++taken;
    });
    EXPECT_EQ(WaitForEnd(), ScanOutcome::Completed);
    EXPECT_EQ(taken, count);
    EXPECT_LE(mostAhead, 2 * int{ArchiveScan::segment});
    EXPECT_GT(mostAhead, int{ArchiveScan::segment}) << "nothing is read while the last rows are taken";
}

TEST_F(ArchiveScanTest, OneScanAtATime) {
    AddMessages(3);
    Start();
    scan->Start({u"/none/"_s, request.profile}, [](const ReadRow&) { FAIL() << "it is of no other archive"; });
    EXPECT_EQ(WaitForEnd(), ScanOutcome::Completed);
    EXPECT_EQ(rows, NumberedNames(3));
    EXPECT_EQ(ends, 1);
}

TEST_F(ArchiveScanTest, AnotherOneMayBeginWhenItEnds) {
    AddMessages(3);
    QObject::connect(scan.get(), &ArchiveScan::Ended, [this] {
        if (ends == 1) {
            AddMessage(u"new.eml"_s, 5'000'000'000);
            Start();
        }
    });
    Start();
    ASSERT_TRUE(RunUntil([this] { return ends == 2; }));
    EXPECT_EQ(rows, NumberedNames(3) + NumberedNames(3) + QStringList(u"new.eml"_s));
}

#ifndef _WIN32

class ArchiveScanOfRealFiles : public RealFilesTest {
protected:
    /// The names of the rows, of which all have to be loaded.
    QStringList Rows(const ServerProfile& profile) {
        QStringList rows;
        ThreadWorkPool pool;
        ArchiveScan scan(*files_, pool);
        scan.Start({folder_.path(), &profile}, [&rows](const ReadRow& row) {
            EXPECT_TRUE(row.loaded) << row.row.Cell(ColumnSubject).toStdString();
            rows.append(row.row.Key());
        });
        EXPECT_TRUE(RunUntil([&scan] { return !scan.IsRunning(); }));
        return rows;
    }

    /// A message that came so many nanoseconds after a full second.
    void Make(const QByteArray& name, long ns) {
        const int file = ::open(Native(name.constData()).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        const timespec times[2] = {{1'700'000'000, ns}, {1'700'000'000, ns}};
        isMade_ = file >= 0 && ::write(file, "Subject: s\n\n", 12) == 12 && ::futimens(file, times) == 0;
        ::close(file);
    }

    bool isMade_ = false;
};

TEST_F(ArchiveScanOfRealFiles, IsInOrderOfArrivalToTheNanosecond) {
    Make("z.EML", 0);
    Make("m.EML", 1);
    Make("b.EML", 2);
    Make("a.EML", 2);
    ASSERT_TRUE(isMade_);
    ASSERT_EQ(::symlink("z.EML", Native("link.EML").constData()), 0);
    ASSERT_EQ(::symlink("nowhere", Native("dangling.EML").constData()), 0);
    ASSERT_EQ(::mkfifo(Native("fifo.EML").constData(), 0600), 0);
    ASSERT_EQ(::mkdir(Native("folder.EML").constData(), 0700), 0);
    EXPECT_EQ(Rows(ServerProfiles().front()),
              (QStringList{u"link.EML"_s, u"z.EML"_s, u"m.EML"_s, u"a.EML"_s, u"b.EML"_s}));
}

TEST_F(ArchiveScanOfRealFiles, ReadsFilesWhoseNamesAreNoUtf8) {
    Make("gr\xFC.EML", 0);
    if (!isMade_) {
        GTEST_SKIP() << "the file system takes UTF-8 only";
    }
    Make("gr\xC3\xBC.EML", 1);
    Make("\xE6\x97\xA5.EML", 2);
    EXPECT_EQ(Rows(ServerProfiles().front()),
              (QStringList{QString::fromUtf16(u"gr\uFFFDFC.EML"), u"gr\u00FC.EML"_s, u"\u65E5.EML"_s}));
    EXPECT_EQ(::unlink(Native("gr\xFC.EML").constData()), 0) << "the temporary folder cannot remove it";
}

TEST_F(ArchiveScanOfRealFiles, ReadsBothFoldersOfAMaildir) {
    ASSERT_EQ(::mkdir(Native("new").constData(), 0700), 0);
    ASSERT_EQ(::mkdir(Native("cur").constData(), 0700), 0);
    Make("new/2.a", 2);
    Make("cur/1.a:2,S", 1);
    ASSERT_TRUE(isMade_);
    EXPECT_EQ(Rows(ProfileOf(u"maildir"_s)), (QStringList{u"cur/1.a:2,S"_s, u"new/2.a"_s}));
}

#endif

} // namespace quellbox
