#include "archive/ArchiveScan.h"

#include "mail/ServerProfile.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quellbox {

using namespace Qt::StringLiterals;

namespace {

/// An archive in memory, and what scans of it tell.
class ArchiveScanTest : public testing::Test {
protected:
    ArchiveScanTest() {
        files.AddFolder(archive);
        Make(files);
    }

    // The readers of a test must not outlive its file system.
    ~ArchiveScanTest() override {
        scan.reset();
        pool.WaitForDone();
    }

    void Make(const FileSystem& system) {
        scan = std::make_unique<ArchiveScan>(system, pool);
        QObject::connect(scan.get(), &ArchiveScan::Listed, [this](qint64 count) { listed = count; });
        QObject::connect(scan.get(), &ArchiveScan::Ended, [this](const ScanResult& ended) {
            EXPECT_FALSE(scan->IsRunning());
            result = ended;
            ++ends;
        });
    }

    void AddMessage(const QString& name, qint64 modifiedNs) {
        files.Add(archive.PathOf(name), "Subject: " + name.toUtf8() + "\r\n\r\nbody", modifiedNs);
    }

    /// Adds messages 000000.eml, 000001.eml and so on; each arrives a second after the one before.
    void AddMessages(int count) {
        for (int message = 0; message < count; ++message) {
            AddMessage(NumberedName(message), message * 1'000'000'000LL);
        }
    }

    static QString NumberedName(int message) { return u"%1.eml"_s.arg(message, 6, 10, QLatin1Char('0')); }

    void Start() {
        scan->Start(request, [this](const ReadRow& row) { rows.append(row.row.Key()); });
    }

    ScanOutcome WaitForEnd() {
        EXPECT_TRUE(RunUntil([this] { return !scan->IsRunning(); }));
        return result.outcome;
    }

    /// A scan from its start to its end.
    ScanOutcome Run() {
        Start();
        return WaitForEnd();
    }

    const Folder archive{u"/Archive"_s};
    MemoryFileSystem files;
    ThreadWorkPool pool;
    std::unique_ptr<ArchiveScan> scan;
    ScanRequest request{archive, &ServerProfiles().front()};

    QStringList rows;
    qint64 listed = -1;
    ScanResult result;
    int ends = 0;
};

} // namespace

TEST_F(ArchiveScanTest, HandsOverTheRowsInOrderOfArrival) {
    AddMessage(u"c.eml"_s, 5);
    AddMessage(u"b.eml"_s, 6);
    AddMessage(u"B.eml"_s, 6);
    AddMessage(u"a.eml"_s, 7);
    AddMessage(u"old.eml"_s, -1);
    EXPECT_EQ(Run(), ScanOutcome::Completed);
    EXPECT_EQ(rows, (QStringList{u"old.eml"_s, u"c.eml"_s, u"B.eml"_s, u"b.eml"_s, u"a.eml"_s}));
    EXPECT_EQ(listed, 5);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(result.reason, QString());
}

} // namespace quellbox
