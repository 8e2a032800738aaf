#include "platform/FileSystem.h"

#include "platform/RuntimeError.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RealFiles.h"

#include <QDir>

#include <map>
#include <stdexcept>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

namespace quellbox {

namespace {

/// Kind and whether it is hidden, by name.
using Seen = std::map<QString, std::pair<EntryKind, bool>>;

Seen Visited(const FileSystem& files, const QString& folder) {
    Seen seen;
    files.VisitEntries(folder, [&seen](const FolderEntry& entry) {
        EXPECT_TRUE(seen.emplace(entry.name, std::pair(entry.kind, entry.hidden)).second)
            << entry.name.toStdString() << " came twice";
    });
    return seen;
}

Seen Listed(const FileSystem& files, const QString& folder) {
    Seen seen;
    for (const FolderEntry& entry : files.Entries(folder)) {
        seen.emplace(entry.name, std::pair(entry.kind, entry.hidden));
    }
    return seen;
}

/// Visits until the third entry, and throws there.
void VisitTwo(const FileSystem& files, const QString& folder) {
    int visited = 0;
    files.VisitEntries(folder, [&visited](const FolderEntry&) {
        if (++visited == 3) {
            throw std::runtime_error("enough");
        }
    });
}

class VisitEntriesTest : public RealFilesTest {};

TEST_F(VisitEntriesTest, SeesWhatAListingHas) {
    EXPECT_TRUE(Visited(*files_, folder_.path()).empty());
    for (const char* name : {"a.EML", ".hidden", "gr\u00FC\u00DFe", "\u65E5\u672C"}) {
        files_->WriteWhole(Path(name), "x");
    }
    ASSERT_TRUE(QDir().mkdir(Path("sub")));
    const Seen seen = Visited(*files_, folder_.path());
    EXPECT_EQ(seen.size(), 5U);
    EXPECT_EQ(seen, Listed(*files_, folder_.path()));
    EXPECT_EQ(seen.at(Text("sub")).first, EntryKind::Folder);
    EXPECT_EQ(seen.at(Text("a.EML")).first, EntryKind::File);
}

TEST_F(VisitEntriesTest, SeesEachOfThousandsOnce) {
    constexpr int count = 3000; // more than the system tells at once
    for (int file = 0; file < count; ++file) {
        QFile made(Path(("a rather long name of a file, number " + QByteArray::number(file)).constData()));
        ASSERT_TRUE(made.open(QIODevice::WriteOnly));
    }
    EXPECT_EQ(Visited(*files_, folder_.path()).size(), size_t{count});
}

TEST_F(VisitEntriesTest, OfAMissingFolderIsAnError) {
    EXPECT_THROW(Visited(*files_, Path("none")), FileError);
    files_->WriteWhole(Path("file"), "x");
    EXPECT_THROW(Visited(*files_, Path("file")), FileError);
}

TEST_F(VisitEntriesTest, WhatTheVisitThrowsEndsIt) {
    for (const char* name : {"1", "2", "3", "4"}) {
        files_->WriteWhole(Path(name), "x");
    }
    EXPECT_THROW(VisitTwo(*files_, folder_.path()), std::runtime_error);
    EXPECT_EQ(Visited(*files_, folder_.path()).size(), 4U) << "the next one sees all again";
    MemoryFileSystem memory;
    for (const char* name : {"1", "2", "3", "4"}) {
        memory.Add(Text("/mail/") + Text(name), "x");
    }
    EXPECT_THROW(VisitTwo(memory, Text("/mail")), std::runtime_error);
    EXPECT_EQ(Visited(memory, Text("/mail")).size(), 4U);
}

#ifndef _WIN32

TEST_F(VisitEntriesTest, WhatTheVisitThrowsLeavesNoFolderOpen) {
    for (const char* name : {"1", "2", "3"}) {
        files_->WriteWhole(Path(name), "x");
    }
    const auto nextDescriptor = [] {
        const int number = ::open("/", O_RDONLY | O_CLOEXEC);
        ::close(number);
        return number;
    };
    const int before = nextDescriptor();
    for (int round = 0; round < 5; ++round) {
        EXPECT_THROW(VisitTwo(*files_, folder_.path()), std::runtime_error);
    }
    EXPECT_EQ(nextDescriptor(), before);
}

TEST_F(VisitEntriesTest, GivesNamesThatAreNoUtf8InTheFormThatLeadsBackToThem) {
    const int file = ::open(Native("gr\xFC.EML").constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0) {
        GTEST_SKIP() << "the file system takes UTF-8 only";
    }
    ::close(file);
    const Seen seen = Visited(*files_, folder_.path());
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen.begin()->first, QString::fromUtf16(u"gr\uFFFDFC.EML"));
    EXPECT_TRUE(files_->Remove(folder_.path() + QLatin1Char('/') + seen.begin()->first));
}

TEST_F(VisitEntriesTest, AFolderFullOfLinksIsVisitedToTheEnd) {
    constexpr int count = 1500; // more than are remembered as no regular files
    for (int link = 0; link < count; ++link) {
        ASSERT_EQ(::symlink("nowhere", Native(("link" + QByteArray::number(link)).constData()).constData()), 0);
    }
    files_->WriteWhole(Path("file"), "x");
    ASSERT_TRUE(QDir().mkdir(Path("target")));
    EXPECT_EQ(Visited(*files_, folder_.path()).size(), size_t{count} + 2);
    EXPECT_THROW(files_->Move(Path("target"), Path("moved")), FileError) << "a folder is not taken for a file";
    EXPECT_TRUE(files_->FolderExists(Path("target")));
}

#endif

} // namespace

} // namespace quellbox
