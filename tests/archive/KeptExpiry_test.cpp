#include "archive/KeptExpiry.h"

#include "messages/KeptFolder.h"
#include "tests/support/ManualPool.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RealFiles.h"
#include "tests/support/RunUntil.h"

#include <QDir>
#include <QTimeZone>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

const QString archive = QStringLiteral("/archive/");
const QString above = QStringLiteral("/archive/.quellbox-deleted/");

QString NameFor(const QDateTime& made, int days, const char* random = "123abc") {
    return made.toUTC().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz")) + QLatin1Char('-') + QString::number(days) +
           QLatin1String("d-") + QLatin1String(random);
}

std::vector<FileFailure> Expire(FileSystem& files, const QString& folder, QDate today) {
    ThreadWorkPool pool;
    KeptExpiry expiry(files, pool);
    std::vector<FileFailure> failures;
    QObject::connect(&expiry, &KeptExpiry::Ended,
                     [&failures](const std::vector<FileFailure>& told) { failures = told; });
    expiry.Start(folder, today);
    EXPECT_TRUE(RunUntil([&expiry] { return !expiry.IsRunning(); }));
    return failures;
}

class KeptExpiryTest : public testing::Test {
protected:
    KeptExpiryTest() { files_.AddFolder(archive); }

    QString AddKept(const QString& name, int count = 2) {
        files_.AddFolder(above);
        files_.AddFolder(above + name);
        for (int file = 0; file < count; ++file) {
            files_.Add(above + name + QLatin1Char('/') + QString::number(file) + QStringLiteral(".EML"), "x");
        }
        return above + name;
    }

    const QDateTime noon_{QDate(2026, 3, 10), QTime(12, 0)};
    MemoryFileSystem files_;
};

using KeptExpiryOnDisk = RealFilesTest;

} // namespace

TEST_F(KeptExpiryTest, AFolderGoesOnTheDayAfterItsOwnDays) {
    for (const int days : {1, 30, 999}) {
        const QString folder = AddKept(NameFor(noon_, days));
        EXPECT_TRUE(Expire(files_, archive, noon_.date().addDays(days)).empty());
        EXPECT_TRUE(files_.FolderExists(folder)) << days;
        EXPECT_EQ(files_.Paths().size(), 2);
        EXPECT_TRUE(Expire(files_, archive, noon_.date().addDays(days + 1)).empty());
        EXPECT_FALSE(files_.FolderExists(folder)) << days;
        EXPECT_TRUE(files_.Paths().isEmpty());
    }
}

TEST_F(KeptExpiryTest, TheLocalDayOfItsMakingCounts) {
    const QDate day(2026, 3, 10);
    const QString late = AddKept(NameFor(QDateTime(day, QTime(23, 59, 59)), 1, "00000a"));
    const QString early = AddKept(NameFor(QDateTime(day, QTime(0, 0, 0)), 1, "00000b"));
    Expire(files_, archive, day.addDays(1));
    EXPECT_TRUE(files_.FolderExists(early));
    Expire(files_, archive, day.addDays(2));
    EXPECT_FALSE(files_.FolderExists(early));
    EXPECT_FALSE(files_.FolderExists(late));
}

TEST_F(KeptExpiryTest, EveryFolderHasItsOwnDaysAndTheFutureStays) {
    const QString shortest = AddKept(NameFor(noon_, 1, "00000a"));
    const QString longer = AddKept(NameFor(noon_, 100, "00000b"));
    const QString future = AddKept(NameFor(noon_.addDays(500), 1, "00000c"));
    Expire(files_, archive, noon_.date().addDays(50));
    EXPECT_FALSE(files_.FolderExists(shortest));
    EXPECT_TRUE(files_.FolderExists(longer));
    EXPECT_TRUE(files_.FolderExists(future));
}

TEST_F(KeptExpiryTest, WhatThisProgramHasNotMadeStays) {
    const QString old = NameFor(noon_, 1);
    const QStringList foreign{QStringLiteral("mine"), old + QStringLiteral(".bak"), QStringLiteral("20260310")};
    for (const QString& name : foreign) {
        AddKept(name);
    }
    files_.Add(above + old, "a file of such a name");
    files_.Add(above + QStringLiteral("note.txt"), "x");
    const QStringList before = files_.Paths();
    EXPECT_TRUE(Expire(files_, archive, noon_.date().addDays(1000)).empty());
    EXPECT_EQ(files_.Paths(), before);
}

TEST_F(KeptExpiryTest, AFolderInAnExpiredOneStaysWithWhatIsInIt) {
    const QString folder = AddKept(NameFor(noon_, 1));
    files_.AddFolder(folder + QStringLiteral("/sub"));
    files_.Add(folder + QStringLiteral("/sub/a"), "x");
    EXPECT_TRUE(Expire(files_, archive, noon_.date().addDays(9)).empty());
    EXPECT_EQ(files_.Paths(), QStringList{folder + QStringLiteral("/sub/a")});
    EXPECT_TRUE(files_.FolderExists(folder));
}

TEST_F(KeptExpiryTest, AReadOnlyMessageGoesAsWell) {
    const QString folder = AddKept(NameFor(noon_, 1), 1);
    files_.SetReadOnly(folder + QStringLiteral("/0.EML"));
    EXPECT_TRUE(Expire(files_, archive, noon_.date().addDays(9)).empty());
    EXPECT_FALSE(files_.FolderExists(folder));
}

TEST_F(KeptExpiryTest, WithoutAnythingKeptItCostsOneListing) {
    EXPECT_TRUE(Expire(files_, archive, noon_.date()).empty()) << "that there is no folder is no failure";
    EXPECT_EQ(files_.CallCount(), 1);
    AddKept(NameFor(noon_, 5));
    EXPECT_TRUE(Expire(files_, archive, noon_.date()).empty());
    EXPECT_EQ(files_.CallCount(), 2) << "nor more where nothing is to go";
}

TEST_F(KeptExpiryTest, AFailureIsToldAndTheRestGoes) {
    const QString folder = AddKept(NameFor(noon_, 1), 3);
    files_.FailPath(folder + QStringLiteral("/1.EML"), QStringLiteral("no right"));
    const std::vector<FileFailure> failures = Expire(files_, archive, noon_.date().addDays(9));
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures.front().reason, QStringLiteral("no right"));
    EXPECT_EQ(files_.Paths().size(), 1);
}

TEST_F(KeptExpiryTest, WhateverFailsNothingElseGoes) {
    const QString mine = archive + QStringLiteral("message.EML");
    for (int failing = 1; failing <= 9; ++failing) {
        files_.Add(mine, "x");
        AddKept(NameFor(noon_, 1, "00000a"));
        AddKept(NameFor(noon_, 900, "00000b"));
        files_.FailCall(failing);
        Expire(files_, archive, noon_.date().addDays(9));
        files_.FailCall(0);
        EXPECT_TRUE(files_.FileExists(mine));
        EXPECT_TRUE(files_.FileExists(above + NameFor(noon_, 900, "00000b") + QStringLiteral("/1.EML")));
    }
}

TEST_F(KeptExpiryTest, GivenUpItDeletesNoMore) {
    const QString folder = AddKept(NameFor(noon_, 1), 5);
    ManualPool pool;
    KeptExpiry expiry(files_, pool);
    bool ended = false;
    QObject::connect(&expiry, &KeptExpiry::Ended, [&ended] { ended = true; });
    expiry.Start(archive, noon_.date().addDays(9));
    expiry.GiveUp();
    EXPECT_TRUE(ended);
    EXPECT_FALSE(expiry.IsRunning());
    pool.RunAll();
    EXPECT_EQ(files_.Paths().size(), 5);
    EXPECT_TRUE(files_.FolderExists(folder));
}

#ifndef _WIN32
TEST_F(KeptExpiryOnDisk, LinksAreNotFollowed) {
    const QDateTime made(QDate(2026, 3, 10), QTime(12, 0));
    const QString name = NameFor(made, 1);
    for (const QString& folder : {QStringLiteral("a"), QStringLiteral("b/.quellbox-deleted"),
                                  QStringLiteral("else/") + name, QStringLiteral("target")}) {
        ASSERT_TRUE(QDir(folder_.path()).mkpath(folder));
    }
    const QString inside = Path("else/") + name + QStringLiteral("/x.EML");
    files_->WriteWhole(inside, "x");
    files_->WriteWhole(Path("target/y.EML"), "y");
    ASSERT_TRUE(QFile::link(Path("else"), Path("a/.quellbox-deleted")));
    ASSERT_TRUE(QFile::link(Path("target"), Path("b/.quellbox-deleted/") + name));
    for (const char* folder : {"a/", "b/"}) {
        EXPECT_TRUE(Expire(*files_, Path(folder), made.date().addDays(9)).empty());
    }
    EXPECT_TRUE(files_->FileExists(inside));
    EXPECT_TRUE(files_->FileExists(Path("target/y.EML")));
}
#endif

TEST_F(KeptExpiryOnDisk, WhatAnActionKeptGoesForGood) {
    const QDateTime made(QDate(2026, 3, 10), QTime(12, 0));
    KeptFolder kept(*files_, folder_.path(), 3, made);
    kept.Make();
    for (int file = 0; file < 20; ++file) {
        files_->WriteWhole(kept.PathOf(QString::number(file)), "x");
    }
    EXPECT_TRUE(Expire(*files_, folder_.path(), made.date().addDays(3)).empty());
    EXPECT_EQ(NamesIn(kept.Path()).size(), 20);
    EXPECT_TRUE(Expire(*files_, folder_.path(), made.date().addDays(4)).empty());
    EXPECT_FALSE(QDir(kept.Path()).exists());
}

} // namespace quellbox
