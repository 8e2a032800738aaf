#pragma once

#include "archive/ArchiveScan.h"

#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

#include <memory>

namespace quellbox {

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
        files.Add(archive.PathOf(name), "Subject: About " + name.toUtf8() + "\r\n\r\nbody", modifiedNs);
    }

    static QString NumberedName(int message) { return QStringLiteral("%1.eml").arg(message, 6, 10, QLatin1Char('0')); }

    static QStringList NumberedNames(int count) {
        QStringList names;
        for (int message = 0; message < count; ++message) {
            names.append(NumberedName(message));
        }
        return names;
    }

    /// Adds messages 000000.eml, 000001.eml and so on; each arrives a second after the one before.
    void AddMessages(int count) {
        for (int message = 0; message < count; ++message) {
            AddMessage(NumberedName(message), message * 1'000'000'000LL);
        }
    }

    void Start() {
        scan->Start(request, [this](const ReadRow& row) {
            EXPECT_TRUE(scan->IsRunning());
            rows.append(row.row.Key());
            subjects.append(row.row.Cell(ColumnSubject));
        });
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

    QStringList ListedNames() const {
        QStringList names;
        for (size_t file = 0; file < scan->Files()->Count(); ++file) {
            names.append(scan->Files()->NameAt(file));
        }
        return names;
    }

    const Folder archive{QStringLiteral("/Archive/")};
    MemoryFileSystem files;
    ThreadWorkPool pool;
    std::unique_ptr<ArchiveScan> scan;
    ScanRequest request{archive, &ServerProfiles().front()};

    QStringList rows; ///< their names
    QStringList subjects;
    qint64 listed = -1;
    ScanResult result;
    int ends = 0;
};

} // namespace quellbox
