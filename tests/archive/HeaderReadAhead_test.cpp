#include "archive/HeaderReadAhead.h"

#include "tests/support/MemoryFileSystem.h"

#include <gtest/gtest.h>

#include <QSemaphore>
#include <QThread>

#include <atomic>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr int fileCount = 40;

QString NameOf(int file) {
    return u"%1.eml"_s.arg(file, 3, 10, QLatin1Char('0'));
}

class HeaderReadAheadTest : public testing::Test {
protected:
    HeaderReadAheadTest() {
        pool.setMaxThreadCount(8);
        for (int file = 0; file < fileCount; ++file) {
            const QByteArray text = "Subject: s" + QByteArray::number(file) + "\r\nX-SENDER: a@b.c\r\n\r\nbody";
            files.Add(u"/a/"_s + NameOf(file), text);
            entries.push_back({NameOf(file), {text.size(), 0}});
        }
    }

    // The readers of a test must not outlive its file system.
    ~HeaderReadAheadTest() override { pool.waitForDone(); }

    HeaderReadAhead Rows(bool bulk = false) { return {files, u"/a/"_s, entries, bulk, pool}; }

    QStringList TakeAll(HeaderReadAhead& rows) {
        QStringList keys;
        while (!rows.AtEnd() && rows.WaitForNext(20s)) {
            const ReadRow read = rows.TakeNext();
            EXPECT_TRUE(read.loaded);
            EXPECT_EQ(read.row.cells[ColumnSubject], u"s%1"_s.arg(keys.size()));
            keys += read.row.key;
        }
        return keys;
    }

    QStringList AllNames() const {
        QStringList names;
        for (const FileEntry& entry : entries) {
            names += entry.name;
        }
        return names;
    }

    MemoryFileSystem files;
    std::vector<FileEntry> entries;
    // What a read hook uses must live as long as the readers.
    QSemaphore release;
    QSemaphore stalled;
    std::atomic<int> inside{0};
    QThreadPool pool;
};

} // namespace

TEST_F(HeaderReadAheadTest, IsAtItsEndAtOnceWithoutFiles) {
    entries.clear();
    EXPECT_TRUE(Rows().AtEnd());
}

TEST_F(HeaderReadAheadTest, HandsOverTheRowsInOrderThoughTheFirstFileIsTheLastRead) {
    files.SetReadHook([&](const QString& path) {
        if (!path.endsWith(NameOf(0))) {
            ++inside;
            return;
        }
        while (inside < fileCount - 1) {
            QThread::msleep(1);
        }
    });
    HeaderReadAhead rows = Rows();
    EXPECT_EQ(TakeAll(rows), AllNames());
    EXPECT_TRUE(rows.AtEnd());
}

TEST_F(HeaderReadAheadTest, HandsOverTheRowsInOrderFromASlowFileSystem) {
    files.SetLatency(2ms);
    HeaderReadAhead rows = Rows();
    EXPECT_EQ(TakeAll(rows), AllNames());
    EXPECT_EQ(files.OpenCount(), fileCount);
}

TEST_F(HeaderReadAheadTest, AddsReadersOnceTheFirstFilesWereSlow) {
    pool.setMaxThreadCount(64);
    const int firstReaders = std::max(2, QThread::idealThreadCount());
    if (firstReaders + 2 > 30) {
        GTEST_SKIP() << "this processor starts with as many readers as a share would get";
    }
    files.SetLatency(2ms);
    files.SetReadHook([&](const QString& path) {
        if (path > u"/a/"_s + NameOf(9)) {
            ++inside;
            release.acquire();
        }
    });
    HeaderReadAhead rows = Rows();
    for (int wait = 0; wait < 20'000 && inside <= firstReaders; ++wait) {
        QThread::msleep(1);
    }
    EXPECT_GT(inside, firstReaders);
    release.release(10 * fileCount);
}

TEST_F(HeaderReadAheadTest, SaysAfterTheLimitThatARowIsNotThereYet) {
    files.SetReadHook([&](const QString&) { release.acquire(); });
    HeaderReadAhead rows = Rows();
    EXPECT_FALSE(rows.WaitForNext(1ms));
    release.release(10 * fileCount);
    EXPECT_TRUE(rows.WaitForNext(20s));
    EXPECT_EQ(rows.TakeNext().row.key, NameOf(0));
}

TEST_F(HeaderReadAheadTest, OpensNothingInBulkMode) {
    HeaderReadAhead rows = Rows(true);
    QStringList keys;
    while (!rows.AtEnd() && rows.WaitForNext(20s)) {
        const ReadRow read = rows.TakeNext();
        EXPECT_FALSE(read.loaded);
        EXPECT_EQ(read.row.cells[ColumnSubject], read.row.key);
        EXPECT_EQ(read.row.cells[ColumnFrom], QString());
        EXPECT_EQ(read.row.tag, QString());
        keys += read.row.key;
    }
    pool.waitForDone();
    EXPECT_EQ(keys, AllNames());
    EXPECT_EQ(files.CallCount(), 0);
}

// Disabled: CleanseForDisplay() mixes positions of two buffers when a text that it has to change is shared.
TEST_F(HeaderReadAheadTest, KeepsTheExactKeyOfANameThatIsUnfitForDisplay) {
    entries = {{u"odd\u202Ename.eml"_s, {5, 0}}};
    HeaderReadAhead rows = Rows(true);
    ASSERT_TRUE(rows.WaitForNext(20s));
    const MessageRow row = rows.TakeNext().row;
    EXPECT_EQ(row.key, u"odd\u202Ename.eml"_s);
    EXPECT_EQ(row.cells[ColumnSubject], u"oddname.eml"_s);
}

TEST_F(HeaderReadAheadTest, WritesTheSizeTwice) {
    entries = {{u"000.eml"_s, {123, 0}}, {u"001.eml"_s, {1'234'567'890, 0}}};
    HeaderReadAhead rows = Rows(true);
    ASSERT_TRUE(rows.WaitForNext(20s));
    const MessageRow small = rows.TakeNext().row;
    EXPECT_EQ(small.cells[ColumnSize], u"123"_s);
    EXPECT_EQ(small.cells[ColumnBytes], u"00000123"_s);
    ASSERT_TRUE(rows.WaitForNext(20s));
    EXPECT_EQ(rows.TakeNext().row.cells[ColumnBytes], u"1234567890"_s);
}

TEST_F(HeaderReadAheadTest, IsDestroyedWhileAReaderStalls) {
    files.SetReadHook([&](const QString&) {
        stalled.release();
        release.acquire();
    });
    {
        HeaderReadAhead rows = Rows();
        ASSERT_TRUE(stalled.tryAcquire(1, 20'000));
    }
    // Only here, after the destruction, is a reader let go: a destructor that waits for it would never come back.
    release.release(10 * fileCount);
    pool.waitForDone();
    EXPECT_LE(files.OpenCount(), pool.maxThreadCount()) << "a reader went on with further files";
}

} // namespace quellbox
