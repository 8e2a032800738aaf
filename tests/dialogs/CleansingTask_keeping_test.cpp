#include "dialogs/CleansingTask.h"

#include "tests/support/FixedClock.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class KeepingCleansing : public testing::Test {
protected:
    KeepingCleansing() {
        files.AddFolder(archive);
        QObject::connect(&task, &CleansingTask::Ended, [this](const CleansingResult& ended) { result = ended; });
        QObject::connect(&task, &CleansingTask::Removing, [this](const QString& name) { shown += name; });
    }

    void Add(const QString& name, int daysAgo) {
        const QDateTime modified = clock.Now().addDays(-daysAgo);
        files.Add(archive + name, name.toLatin1(), modified.toMSecsSinceEpoch() * 1'000'000);
    }

    CleansingResult Run(qint16 days) {
        task.Start(archive, days, clock.Now().date(), kept);
        EXPECT_TRUE(RunUntil([this] { return !task.IsRunning(); }));
        return result;
    }

    const QString archive = u"/archive/"_s;
    FixedClock clock{QDateTime(QDate(2026, 6, 15), QTime(12, 0))};
    MemoryFileSystem files;
    ThreadWorkPool pool;
    CleansingTask task{files, pool};
    CleansingResult result;
    QStringList shown;
    std::shared_ptr<KeptFolder> kept = std::make_shared<KeptFolder>(files, archive, 30, clock.Now());
};

} // namespace

TEST_F(KeepingCleansing, WhatLiesOutsideTheWindowIsKeptInTheFolder) {
    Add(u"old.EML"_s, 7);
    Add(u"recent.EML"_s, 6);
    Add(u"older.eml"_s, 100);
    const CleansingResult ended = Run(7);
    EXPECT_EQ(ended.count, 2);
    EXPECT_TRUE(ended.failures.empty());
    EXPECT_EQ(files.Bytes(kept->PathOf(u"old.EML"_s)), "old.EML");
    EXPECT_EQ(files.Bytes(kept->PathOf(u"older.eml"_s)), "older.eml");
    EXPECT_EQ(files.Bytes(archive + u"recent.EML"_s), "recent.EML");
}

TEST_F(KeepingCleansing, EveryMessageIsOneCallWithAWindowOrWithout) {
    for (const qint16 days : {qint16(0), qint16(1)}) {
        for (int number = 0; number < 30; ++number) {
            Add(QString::number(number) + u".EML"_s, 5);
        }
        kept = std::make_shared<KeptFolder>(files, archive, 30, clock.Now());
        const int before = files.CallCount();
        EXPECT_EQ(Run(days).count, 30);
        EXPECT_EQ(files.CallCount() - before, 1 + 2 + 30) << "the listing and the folder come once";
    }
}

TEST_F(KeepingCleansing, WhereNothingIsToGoNoFolderIsMade) {
    Add(u"today.EML"_s, 0);
    EXPECT_EQ(Run(1).count, 0);
    EXPECT_FALSE(kept->IsMade());
    EXPECT_FALSE(files.FolderExists(KeptFoldersOf(archive)));
}

TEST_F(KeepingCleansing, AReadOnlyMessageIsKeptToo) {
    for (const qint16 days : {qint16(0), qint16(1)}) {
        Add(u"a.EML"_s, 5);
        files.SetReadOnly(archive + u"a.EML"_s);
        kept = std::make_shared<KeptFolder>(files, archive, 30, clock.Now());
        EXPECT_TRUE(Run(days).failures.empty());
        EXPECT_TRUE(files.FileExists(kept->PathOf(u"a.EML"_s)));
    }
}

TEST_F(KeepingCleansing, WithoutTheFolderNothingIsDeletedAndNothingCounts) {
    for (const qint16 days : {qint16(0), qint16(1)}) {
        for (int number = 0; number < 30; ++number) {
            Add(QString::number(number) + u".EML"_s, 5);
        }
        kept = std::make_shared<KeptFolder>(files, archive, 30, clock.Now());
        files.FailPath(KeptFoldersOf(archive), u"no right"_s);
        const CleansingResult ended = Run(days);
        ASSERT_TRUE(ended.refused.has_value());
        EXPECT_EQ(ended.refused->reason, u"no right"_s);
        EXPECT_EQ(ended.count, 0);
        EXPECT_TRUE(ended.failures.empty());
        EXPECT_TRUE(shown.isEmpty());
        EXPECT_EQ(files.Paths().size(), 30);
    }
}

TEST_F(KeepingCleansing, AFailureOfOneMessageIsCountedAndTold) {
    Add(u"a.EML"_s, 5);
    Add(u"b.EML"_s, 5);
    kept->Make();
    files.Add(kept->PathOf(u"a.EML"_s), "other");
    const CleansingResult ended = Run(1);
    EXPECT_EQ(ended.count, 2);
    EXPECT_EQ(ended.failures.size(), 1U);
    EXPECT_FALSE(ended.refused.has_value());
    EXPECT_EQ(files.Bytes(kept->PathOf(u"a.EML"_s)), "other");
    EXPECT_TRUE(files.FileExists(archive + u"a.EML"_s));
}

} // namespace quellbox
