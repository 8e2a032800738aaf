#include "dialogs/CleansingTask.h"
#include "dialogs/CleansingTexts.h"

#include "mail/ServerProfile.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/FileNames.h"
#include "tests/support/FixedClock.h"
#include "tests/support/ManualPool.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

using Shown = std::function<void(const QString&)>;

/// A run from its start to its end.
CleansingResult RunToEnd(FileSystem& files, const Clock& clock, const QString& folder, qint16 days, const Shown& shown,
                         const MessagePlaces& places = {}) {
    ThreadWorkPool pool;
    CleansingTask task(files, pool);
    CleansingResult result;
    QObject::connect(&task, &CleansingTask::Removing, shown);
    QObject::connect(&task, &CleansingTask::Ended, [&result](const CleansingResult& ended) { result = ended; });
    task.Start(folder, days, clock.Now().date(), nullptr, nullptr, {}, places);
    EXPECT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
    return result;
}

class CleansingTest : public testing::Test {
protected:
    static constexpr qint16 every = 0;

    void Add(const QString& name, const QDateTime& modified) {
        files.Add(archive + name, "Subject: x\n\n", modified.toMSecsSinceEpoch() * 1'000'000);
    }

    void Add(const QString& name) { Add(name, clock.Now()); }

    CleansingResult Run(qint16 days) {
        return RunToEnd(files, clock, archive, days, [this](const QString& name) { shown += name; });
    }

    /// Whether a window of `days` keeps a file of `modified` at the time `now`.
    bool Keeps(qint16 days, const QDateTime& now, const QDateTime& modified) {
        clock.Set(now);
        Add(u"a.EML"_s, modified);
        const CleansingResult result = Run(days);
        EXPECT_TRUE(result.failures.empty());
        const bool isKept = files.FileExists(archive + u"a.EML"_s);
        EXPECT_EQ(result.count, isKept ? 0 : 1);
        return isKept;
    }

    /// The names that are left, as in "a.EML b.EML".
    std::string Left() const {
        QStringList names = FileNames(files, archive);
        return names.join(u' ').toStdString();
    }

    const QString archive = u"/archive/"_s;
    const QDate today{2026, 6, 15};
    FixedClock clock{QDateTime(today, QTime(12, 0))};
    MemoryFileSystem files;
    QStringList shown;
};

} // namespace

TEST_F(CleansingTest, TheTextsNameTheArchive) {
    EXPECT_EQ(CleansingIntroduction(u"/a&b/%1/"_s),
              u"/a&b/%1/ contains all archived messages put here by the Exchange Intelligent Message Filter.\r\n\r\n"
              "This cleansing operation helps you to quickly, and permanently, remove them."_s);
    const QString question = u"Clean up /archive/\r\n\r\nPress OK to remove them all permanently from your system"_s;
    EXPECT_EQ(CleansingQuestion(archive, 0), question);
    EXPECT_EQ(CleansingQuestion(archive, 1), question + u", except those that arrived today."_s);
    EXPECT_EQ(CleansingQuestion(archive, 2), question + u", except those that arrived today and yesterday."_s);
    EXPECT_EQ(CleansingQuestion(archive, 7), question + u", except those that arrived during the last seven days."_s);
}

TEST_F(CleansingTest, EveryMessageGoesWhateverItsDate) {
    Add(u"now.EML"_s);
    Add(u"old.EML"_s, QDateTime(QDate(1980, 1, 1), QTime(0, 0)));
    Add(u"future.EML"_s, clock.Now().addYears(1));
    const CleansingResult result = Run(every);
    EXPECT_EQ(result.count, 3);
    EXPECT_TRUE(result.failures.empty());
    EXPECT_EQ(Left(), "");
}

TEST_F(CleansingTest, FilesOfOtherNamesStay) {
    for (const QString& name : {u"a.EML"_s, u"b.eml"_s, u"c.eMl"_s, u"d.EMLX"_s, u"e.txt"_s, u"eml"_s, u"f.EML.bak"_s,
                                u".hidden.EML"_s, u"g..EML"_s}) {
        Add(name);
    }
    EXPECT_EQ(Run(every).count, 4);
    EXPECT_EQ(Left(), ".hidden.EML d.EMLX e.txt eml f.EML.bak");
}

TEST_F(CleansingTest, OfAnotherServerTakesItsFilesAndNoOthers) {
    for (const QString& name : {u"spam-x1"_s, u"virus-x2.gz"_s, u"a.eml"_s, u"amavisd.conf"_s, u"mail.log.1.gz"_s}) {
        Add(name);
    }
    const CleansingResult result = RunToEnd(
        files, clock, archive, every, [](const QString&) {}, ProfileOf(u"amavis"_s).places);
    EXPECT_EQ(result.count, 3);
    EXPECT_EQ(Left(), "amavisd.conf mail.log.1.gz");
}

TEST_F(CleansingTest, OfAMaildirTakesWhatWasDelivered) {
    const QDateTime longAgo = clock.Now().addDays(-30);
    Add(u"new/1.a"_s, longAgo);
    Add(u"cur/2.a:2,S"_s, longAgo);
    Add(u"cur/3.a:2,S"_s);
    Add(u"tmp/4.a"_s, longAgo);
    Add(u"dovecot.index"_s, longAgo);
    const CleansingResult result = RunToEnd(
        files, clock, archive, 7, [](const QString&) {}, ProfileOf(u"maildir"_s).places);
    EXPECT_EQ(result.count, 2);
    EXPECT_TRUE(result.failures.empty());
    EXPECT_EQ(files.Paths(),
              (QStringList{archive + u"cur/3.a:2,S"_s, archive + u"dovecot.index"_s, archive + u"tmp/4.a"_s}));
}

TEST_F(CleansingTest, OneDayEndsAtMidnight) {
    const QDateTime now(today, QTime(0, 0, 30));
    EXPECT_TRUE(Keeps(1, now, QDateTime(today, QTime(0, 0, 10))));
    EXPECT_TRUE(Keeps(1, now, QDateTime(today, QTime(0, 0))));
    EXPECT_FALSE(Keeps(1, now, QDateTime(today.addDays(-1), QTime(23, 59, 59))));
}

TEST_F(CleansingTest, TwoDaysAreTodayAndYesterday) {
    const QDateTime now(today, QTime(23, 59, 59));
    EXPECT_TRUE(Keeps(2, now, QDateTime(today.addDays(-1), QTime(0, 0))));
    EXPECT_FALSE(Keeps(2, now, QDateTime(today.addDays(-2), QTime(23, 59, 59))));
}

TEST_F(CleansingTest, AWeekIsTodayAndTheSixDaysBefore) {
    const QDateTime now(today, QTime(12, 0));
    EXPECT_TRUE(Keeps(7, now, QDateTime(today.addDays(-6), QTime(0, 0))));
    EXPECT_FALSE(Keeps(7, now, QDateTime(today.addDays(-7), QTime(23, 59, 59))));
}

TEST_F(CleansingTest, AFileOfTheNearFutureIsKeptAndOneOfTheFarFutureIsNot) {
    const QDateTime now(today, QTime(12, 0));
    EXPECT_TRUE(Keeps(2, now, QDateTime(today.addDays(1), QTime(23, 59, 59))));
    EXPECT_FALSE(Keeps(2, now, QDateTime(today.addDays(2), QTime(0, 0))));
    EXPECT_FALSE(Keeps(1, now, QDateTime(today.addDays(1), QTime(0, 0))));
}

// A day of 23 or 25 hours is one day, whatever the time on either side of the change.
TEST_F(CleansingTest, BothTimeChangesCountAsOneDay) {
    const QTime first(0, 0, 10);
    const QTime last(23, 59, 59);
    for (const QDate change : {QDate(2026, 3, 8), QDate(2026, 11, 1)}) {
        for (const QDate day : {change, change.addDays(1)}) {
            for (const QTime time : {first, QTime(3, 30), last}) {
                const QDateTime now(day, time);
                EXPECT_TRUE(Keeps(1, now, QDateTime(day, first)));
                EXPECT_FALSE(Keeps(1, now, QDateTime(day.addDays(-1), last)));
                EXPECT_TRUE(Keeps(2, now, QDateTime(day.addDays(-1), first)));
                EXPECT_FALSE(Keeps(2, now, QDateTime(day.addDays(-2), last)));
                EXPECT_TRUE(Keeps(7, now, QDateTime(day.addDays(-6), first)));
                EXPECT_FALSE(Keeps(7, now, QDateTime(day.addDays(-7), last)));
            }
        }
    }
}

TEST_F(CleansingTest, ARunAcrossMidnightKeepsWhatWasTodayWhenItBegan) {
    Add(u"a.EML"_s, clock.Now().addDays(-3));
    Add(u"b.EML"_s, QDateTime(today, QTime(12, 0)));
    const auto midnight = [this](const QString&) { clock.Set(QDateTime(today.addDays(1), QTime(0, 0, 1))); };
    EXPECT_EQ(RunToEnd(files, clock, archive, 1, midnight).count, 1);
    EXPECT_EQ(Left(), "b.EML");
}

TEST_F(CleansingTest, CancelledItTouchesNoFurtherFile) {
    for (int number = 1; number <= 60; ++number) {
        Add(u"m%1.EML"_s.arg(number, 2, 10, QChar(u'0')));
    }
    ManualPool pool;
    CleansingTask task(files, pool);
    std::optional<CleansingResult> result;
    QObject::connect(&task, &CleansingTask::Counted, [&task] { task.Cancel(); });
    QObject::connect(&task, &CleansingTask::Counted, [](int count) { EXPECT_EQ(count, 60); });
    QObject::connect(&task, &CleansingTask::Ended, [&result](const CleansingResult& ended) { result = ended; });
    task.Start(archive, every, today);
    EXPECT_TRUE(RunUntil([&] {
        pool.RunAll();
        return result.has_value();
    }));
    EXPECT_EQ(result->count, 0);
    EXPECT_EQ(FileNames(files, archive).size(), 60);
}

TEST_F(CleansingTest, NoChoiceRemovesNothing) {
    Add(u"a.EML"_s, QDateTime(QDate(1980, 1, 1), QTime(0, 0)));
    EXPECT_EQ(Run(-1).count, 0);
    EXPECT_EQ(Left(), "a.EML");
}

TEST_F(CleansingTest, EveryTwentyFifthFileIsShown) {
    for (int number = 1; number <= 60; ++number) {
        Add(u"m%1.EML"_s.arg(number, 2, 10, QChar(u'0')));
    }
    Add(u"kept.txt"_s);
    EXPECT_EQ(Run(every).count, 60);
    EXPECT_EQ(shown, QStringList({u"m01.EML"_s, u"m26.EML"_s, u"m51.EML"_s}));
}

TEST_F(CleansingTest, KeptFilesAreNotCounted) {
    for (int number = 1; number <= 30; ++number) {
        Add(u"a%1.EML"_s.arg(number));
    }
    Add(u"b.EML"_s, clock.Now().addDays(-1));
    EXPECT_EQ(Run(1).count, 1);
    EXPECT_EQ(shown, QStringList{u"b.EML"_s});
}

TEST_F(CleansingTest, ReadOnlyAndLockedFilesStayAndCount) {
    for (const char* name : {"a.EML", "b.EML", "c.EML", "d.EML"}) {
        Add(QLatin1String(name));
    }
    files.SetReadOnly(archive + u"b.EML"_s);
    files.FailPath(archive + u"c.EML"_s, u"The file is in use."_s);
    const CleansingResult result = Run(every);
    EXPECT_EQ(result.count, 4);
    ASSERT_EQ(result.failures.size(), 2U);
    EXPECT_EQ(result.failures[0].path, archive + u"b.EML"_s);
    EXPECT_EQ(result.failures[1].reason, u"The file is in use."_s);
    EXPECT_EQ(Left(), "b.EML c.EML");
}

TEST_F(CleansingTest, AFileWhoseTimeCannotBeReadStaysAndCounts) {
    Add(u"a.EML"_s, clock.Now().addDays(-9));
    Add(u"b.EML"_s, clock.Now().addDays(-9));
    files.FailPath(archive + u"a.EML"_s, u"Input/output error"_s);
    const CleansingResult result = Run(7);
    EXPECT_EQ(result.count, 2);
    ASSERT_EQ(result.failures.size(), 1U);
    EXPECT_EQ(result.failures[0].path, archive + u"a.EML"_s);
    EXPECT_EQ(Left(), "a.EML");
}

TEST_F(CleansingTest, AMissingFolderIsAFailureOfNothing) {
    const CleansingResult result = Run(every);
    EXPECT_EQ(result.count, 0);
    EXPECT_EQ(result.failures.size(), 1U);
    EXPECT_TRUE(shown.isEmpty());
}

TEST_F(CleansingTest, LooksAtFilesOnlyForADayWindow) {
    Add(u"a.EML"_s);
    Add(u"b.EML"_s);
    const int before = files.CallCount();
    EXPECT_EQ(Run(every).count, 2);
    EXPECT_EQ(files.CallCount() - before, 3) << "one listing and two removals";
}

namespace {

/// A real archive beside a real folder that is none of its business.
class CleansingOfRealFolders : public testing::Test {
protected:
    CleansingOfRealFolders() {
        QDir().mkdir(Archive());
        QDir().mkdir(Other());
    }

    QString Archive(const QString& name = {}) const { return root_.path() + u"/archive/"_s + name; }
    QString Other(const QString& name = {}) const { return root_.path() + u"/other/"_s + name; }
    void Write(const QString& path) { files_->WriteWhole(path, "x"); }

    CleansingResult Run(const QString& folder, const std::function<void(const QString&)>& progress) {
        return RunToEnd(*files_, *MakeClock(), folder, 0, progress);
    }

    QTemporaryDir root_;
    std::unique_ptr<FileSystem> files_ = MakeLocalFileSystem();
};

} // namespace

TEST_F(CleansingOfRealFolders, NeverLeavesTheArchive) {
    Write(Archive(u"a.EML"_s));
    Write(Other(u"b.EML"_s));
    Write(Other(u"c.EML"_s));
    QDir().mkdir(Archive(u"folder.EML"_s));
    Write(Archive(u"folder.EML/d.EML"_s));
#ifdef _WIN32
    constexpr int expected = 1; // symbolic links need a privilege there
    QDir().mkdir(Archive(u"away.EML"_s));
#else
    constexpr int expected = 2; // the file, and the link to a file
    ASSERT_TRUE(QFile::link(Other(), Archive(u"away.EML"_s)));
    ASSERT_TRUE(QFile::link(Other(u"c.EML"_s), Archive(u"link.EML"_s)));
#endif
    const CleansingResult result = Run(Archive(), [](const QString&) {});
    EXPECT_EQ(result.count, expected);
    EXPECT_TRUE(result.failures.empty());
    EXPECT_TRUE(files_->FileExists(Other(u"b.EML"_s)));
    EXPECT_TRUE(files_->FileExists(Other(u"c.EML"_s)));
    EXPECT_TRUE(files_->FileExists(Archive(u"folder.EML/d.EML"_s)));
    EXPECT_TRUE(files_->FolderExists(Archive(u"away.EML"_s)));
}

TEST_F(CleansingOfRealFolders, AFolderWithoutASeparatorAtItsEndIsStillThatFolder) {
    Write(Archive(u"a.EML"_s));
    Write(root_.path() + u"/archivea.EML"_s);
    EXPECT_EQ(Run(root_.path() + u"/archive"_s, [](const QString&) {}).count, 1);
    EXPECT_FALSE(files_->FileExists(Archive(u"a.EML"_s)));
    EXPECT_TRUE(files_->FileExists(root_.path() + u"/archivea.EML"_s));
}

TEST_F(CleansingOfRealFolders, AnArchiveThatVanishesMeanwhileStillCountsItsFiles) {
    for (int number = 0; number < 30; ++number) {
        Write(Archive(u"m%1.EML"_s.arg(number)));
    }
    ManualPool pool;
    CleansingTask task(*files_, pool);
    CleansingResult result;
    QObject::connect(&task, &CleansingTask::Counted, [this] { QDir(root_.path()).rename(u"archive"_s, u"gone"_s); });
    QObject::connect(&task, &CleansingTask::Ended, [&result](const CleansingResult& ended) { result = ended; });
    task.Start(Archive(), 0, QDate());
    EXPECT_TRUE(RunUntil([&] {
        pool.RunAll();
        return !task.IsRunning();
    }));
    EXPECT_EQ(result.count, 30);
    EXPECT_EQ(result.failures.size(), 30U);
    EXPECT_EQ(FileNames(*files_, root_.path() + u"/gone"_s).size(), 30);
}

} // namespace quellbox
