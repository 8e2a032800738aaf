#include "archive/MessageReading.h"

#include "tests/support/Gzip.h"
#include "tests/support/MemoryFileSystem.h"

#include <gtest/gtest.h>

namespace quellbox {
namespace {

using namespace Qt::StringLiterals;

class MessageReading : public testing::Test {
protected:
    ReadRow Read(const FileEntry& entry, bool bulk = false) {
        return ReadMessageRow(*files.ReadFolder(u"/a/"_s), entry, bulk, ServerProfiles().front());
    }

    MemoryFileSystem files;
};

TEST_F(MessageReading, FillsTheRowFromTheHeaders) {
    files.Add(u"/a/1.eml"_s, "Subject: s\r\nX-SENDER: a@b.c\r\n\r\nbody");
    const ReadRow read = Read({u"1.eml"_s, {123, 5}});
    EXPECT_TRUE(read.loaded);
    EXPECT_FALSE(read.canHeal);
    EXPECT_EQ(read.row.Key(), u"1.eml"_s);
    EXPECT_EQ(read.row.Cell(ColumnSubject), u"s"_s);
    EXPECT_EQ(read.row.Tag(), u"a@b.c"_s);
    EXPECT_EQ(read.status, (FileStatus{123, 5}));
}

TEST_F(MessageReading, OpensNothingInBulkMode) {
    const ReadRow read = Read({u"000.eml"_s, {123, 0}}, true);
    EXPECT_FALSE(read.loaded);
    EXPECT_EQ(read.row.Cell(ColumnSubject), u"000.eml"_s);
    EXPECT_EQ(read.row.Cell(ColumnFrom), QString());
    EXPECT_EQ(read.row.Tag(), QString());
    EXPECT_EQ(files.CallCount(), 0);
}

TEST_F(MessageReading, KeepsTheExactKeyOfANameThatIsUnfitForDisplay) {
    const ReadRow read = Read({u"odd\u202Ename.eml"_s, {5, 0}}, true);
    EXPECT_EQ(read.row.Key(), u"odd\u202Ename.eml"_s);
    EXPECT_EQ(read.row.Cell(ColumnSubject), u"oddname.eml"_s);
}

TEST_F(MessageReading, WritesTheSizeTwice) {
    EXPECT_EQ(Read({u"0"_s, {123, 0}}, true).row.Cell(ColumnSize), u"123"_s);
    EXPECT_EQ(Read({u"0"_s, {123, 0}}, true).row.Cell(ColumnBytes), u"00000123"_s);
    EXPECT_EQ(Read({u"0"_s, {1'234'567'890, 0}}, true).row.Cell(ColumnBytes), u"1234567890"_s);
}

TEST_F(MessageReading, WhatIsDamagedInItsPackingIsNoMessage) {
    files.Add(u"/a/1.gz"_s, Gzip("Subject: s\r\n\r\n").chopped(12));
    const ReadRow read = ReadMessageRow(*files.ReadFolder(u"/a/"_s), {u"1.gz"_s, {}}, false, ProfileOf(u"amavis"_s));
    EXPECT_FALSE(read.loaded);
    EXPECT_FALSE(read.canHeal) << "unless the file changes";
    EXPECT_EQ(read.row.Cell(ColumnSubject), u"The packed file is damaged"_s);
}

TEST_F(MessageReading, OnlyWhatCouldNotBeReadNowCanHeal) {
    files.Add(u"/a/locked.eml"_s, "Subject: s\r\n\r\n");
    files.FailPath(u"/a/locked.eml"_s, u"The file is in use."_s);
    files.Add(u"/a/empty.eml"_s, "");
    const ReadRow locked = Read({u"locked.eml"_s, {}});
    EXPECT_FALSE(locked.loaded);
    EXPECT_TRUE(locked.canHeal);
    EXPECT_TRUE(locked.row.Cell(ColumnSubject).contains(u"in use"_s));
    const ReadRow empty = Read({u"empty.eml"_s, {}});
    EXPECT_FALSE(empty.loaded);
    EXPECT_FALSE(empty.canHeal);
}

} // namespace
} // namespace quellbox
