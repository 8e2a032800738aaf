#include "dialogs/CleansingPreview.h"

#include "archive/LocalTime.h"
#include "dialogs/CleansingSum.h"
#include "dialogs/CleansingTask.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/FileNames.h"
#include "tests/support/ManualPool.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <set>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

constexpr qint16 choices[] = {0, 1, 2, 7};

/// An archive on a server that answers no more after the listing.
class SilentFiles : public MemoryFileSystem {
public:
    std::optional<FileStatus> Status(const QString& path) const override {
        throw FileError(path, u"Connection timed out"_s, FileProblem::NoAnswer);
    }
};

class CleansingPreviewTest : public testing::Test {
protected:
    void Add(const QString& name, const QDateTime& modified) {
        const QByteArray bytes(static_cast<int>(10 + files.Paths().size()), 'x'); // no two have the same size
        files.Add(archive + name, bytes, modified.toMSecsSinceEpoch() * 1'000'000);
    }

    void Add(const QString& name) { Add(name, QDateTime(today, QTime(12, 0))); }

    /// Fills the archive anew: with messages at the beginning, in the middle and at the end of the days around a day,
    /// and with what is no message.
    void FillAround(QDate day) {
        for (const QString& path : files.Paths()) {
            files.Remove(path);
        }
        for (int offset = -9; offset <= 9; ++offset) {
            for (const QTime time : {QTime(0, 0), QTime(0, 0, 1), QTime(3, 30), QTime(23, 59, 59, 999)}) {
                const QString ending = offset % 2 == 0 ? u"EML"_s : u"eml"_s;
                Add(u"%1-%2.%3"_s.arg(offset).arg(time.msecsSinceStartOfDay()).arg(ending),
                    QDateTime(day.addDays(offset), time));
            }
        }
        for (const QString& name : {u".hidden.EML"_s, u"note.txt"_s, u"a.EMLX"_s}) {
            Add(name, QDateTime(day.addDays(-30), QTime(12, 0)));
        }
        files.AddFolder(archive + u"folder.EML"_s);
    }

    const CleansingPreview& Started(CleansingPreview& preview) const {
        preview.Start(archive);
        EXPECT_TRUE(RunUntil([&preview] { return preview.HasEnded(); }));
        return preview;
    }

    DayTotals Messages() {
        CleansingPreview preview(files, pool);
        return Started(preview).Messages();
    }

    /// What the run removes.
    CleansingSum Removed(qint16 days, QDate day) {
        std::map<QString, FileStatus> before;
        for (const QString& path : files.Paths()) {
            before.emplace(path, *files.Status(path));
        }
        CleansingTask task(files, pool);
        CleansingResult result;
        QObject::connect(&task, &CleansingTask::Ended, [&result](const CleansingResult& ended) { result = ended; });
        task.Start(archive, days, day);
        EXPECT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
        EXPECT_TRUE(result.failures.empty());
        CleansingSum sum;
        std::set<QDate> removedDays;
        for (const auto& [path, status] : before) {
            if (!files.FileExists(path)) {
                ++sum.count;
                sum.bytes += status.size;
                removedDays.insert(LocalDay(status.modifiedNs));
            }
        }
        EXPECT_EQ(result.count, sum.count);
        sum.oldest = removedDays.empty() ? QDate() : *removedDays.begin();
        sum.newest = removedDays.empty() ? QDate() : *removedDays.rbegin();
        return sum;
    }

    const QString archive = u"/archive/"_s;
    const QDate today{2026, 6, 15};
    MemoryFileSystem files;
    ThreadWorkPool pool;
};

} // namespace

// On ordinary days and where a day has 23 or 25 hours, in the zone of the test.
TEST_F(CleansingPreviewTest, CountsWhatTheRunThenRemoves) {
    for (const QDate day : {today, QDate(2026, 3, 8), QDate(2026, 3, 9), QDate(2026, 11, 1), QDate(2026, 11, 2)}) {
        for (const qint16 days : choices) {
            FillAround(day);
            const CleansingSum sum = SumOfCleansing(Messages(), days, day);
            EXPECT_GT(sum.count, 0);
            EXPECT_EQ(sum, Removed(days, day)) << days << ' ' << day.toString(Qt::ISODate).toStdString();
        }
    }
}

TEST_F(CleansingPreviewTest, WhatFoldersReportCountsTheSame) {
    for (const qint16 days : choices) {
        FillAround(today);
        files.LetFoldersTellStatus([](const QString& name) { return name.startsWith(u'-'); });
        const CleansingSum sum = SumOfCleansing(Messages(), days, today);
        EXPECT_EQ(sum, Removed(days, today)) << days;
    }
}

TEST_F(CleansingPreviewTest, MakesOneListingAndOneCallAMessageAtMost) {
    for (int number = 0; number < 40; ++number) {
        Add(u"m%1.EML"_s.arg(number));
    }
    Add(u"note.txt"_s);
    Add(u".hidden.EML"_s);
    const int bytes = 40 * 10 + 40 * 39 / 2;
    int before = files.CallCount();
    EXPECT_EQ(Messages(), (DayTotals{{today, {40, bytes}}}));
    EXPECT_EQ(files.CallCount() - before, 41);
    files.LetFoldersTellStatus([](const QString& name) { return name != u"m7.EML"_s; });
    before = files.CallCount();
    EXPECT_EQ(Messages(), (DayTotals{{today, {40, bytes}}}));
    EXPECT_EQ(files.CallCount() - before, 2);
}

TEST_F(CleansingPreviewTest, AnEmptyArchiveHasNothing) {
    files.AddFolder(archive);
    CleansingPreview preview(files, pool);
    EXPECT_TRUE(Started(preview).Messages().empty());
    EXPECT_TRUE(preview.Error().isEmpty());
}

TEST_F(CleansingPreviewTest, AnArchiveThatCannotBeReadIsTold) {
    CleansingPreview missing(files, pool);
    EXPECT_FALSE(Started(missing).Error().isEmpty());
    EXPECT_FALSE(missing.Error().contains(archive)) << "the user knows it";
    Add(u"a.EML"_s);
    files.FailPath(archive, u"Permission denied"_s);
    CleansingPreview forbidden(files, pool);
    EXPECT_EQ(Started(forbidden).Error(), u"Permission denied"_s);
}

TEST_F(CleansingPreviewTest, AServerThatAnswersNoMoreIsTold) {
    SilentFiles silent;
    silent.Add(archive + u"a.EML"_s, "x");
    CleansingPreview preview(silent, pool);
    EXPECT_EQ(Started(preview).Error(), u"Connection timed out"_s);
    pool.WaitForDone();
}

TEST_F(CleansingPreviewTest, WhatVanishesMeanwhileIsLeftOut) {
    Add(u"a.EML"_s);
    Add(u"b.EML"_s);
    ManualPool manual;
    CleansingPreview preview(files, manual);
    preview.Start(archive);
    ASSERT_TRUE(manual.RunNext());
    files.Remove(archive + u"a.EML"_s);
    EXPECT_TRUE(RunUntil([&] {
        manual.RunAll();
        return preview.HasEnded();
    }));
    EXPECT_EQ(SumOfCleansing(preview.Messages(), 0, today).count, 1);
    EXPECT_TRUE(preview.Error().isEmpty());
}

TEST_F(CleansingPreviewTest, GivenUpItMakesNoFurtherCall) {
    for (int number = 0; number < 40; ++number) {
        Add(u"m%1.EML"_s.arg(number));
    }
    ManualPool manual;
    auto preview = std::make_unique<CleansingPreview>(files, manual);
    preview->Start(archive);
    ASSERT_TRUE(manual.RunNext());
    EXPECT_TRUE(RunUntil([&manual] { return manual.Waiting() > 0; })) << "the statuses";
    const int before = files.CallCount();
    preview.reset();
    manual.RunAll();
    EXPECT_EQ(files.CallCount(), before);
}

#ifndef _WIN32

TEST_F(CleansingPreviewTest, LinksCountAsWhatTheyLeadTo) {
    const QTemporaryDir root;
    const std::unique_ptr<FileSystem> real = MakeLocalFileSystem();
    const auto path = [&root](const QString& name) { return root.path() + u'/' + name; };
    QDir().mkdir(path(u"archive"_s));
    QDir().mkdir(path(u"archive/folder.EML"_s));
    real->WriteWhole(path(u"other"_s), "12345");
    real->WriteWhole(path(u"archive/a.EML"_s), "1");
    ASSERT_TRUE(QFile::link(path(u"other"_s), path(u"archive/link.EML"_s)));
    ASSERT_TRUE(QFile::link(path(u"none"_s), path(u"archive/dead.EML"_s)));
    ASSERT_TRUE(QFile::link(root.path(), path(u"archive/away.EML"_s)));
    CleansingPreview preview(*real, pool);
    preview.Start(path(u"archive"_s));
    ASSERT_TRUE(RunUntil([&preview] { return preview.HasEnded(); }));
    const CleansingSum sum = SumOfCleansing(preview.Messages(), 0, today);
    EXPECT_EQ(sum.count, 2);
    EXPECT_EQ(sum.bytes, 6);
    CleansingTask task(*real, pool);
    CleansingResult result;
    QObject::connect(&task, &CleansingTask::Ended, [&result](const CleansingResult& ended) { result = ended; });
    task.Start(path(u"archive"_s), 0, today);
    EXPECT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
    EXPECT_EQ(result.count, 2);
}

#endif

} // namespace quellbox
