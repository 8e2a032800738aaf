#include "delivery/SendingFolder.h"

#include "platform/RuntimeError.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/NativePath.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

class SendingFolderTest : public testing::Test {
protected:
    SendingFolderTest() {
        files_.AddFolder(archive_);
        files_.Add(archive_.PathOf(Text("a.EML")), "first");
    }

    const Folder archive_ = NativePath(Text("/archive"));
    const QDateTime now_{QDate(2026, 6, 15), QTime(12, 0), Qt::UTC};
    MemoryFileSystem files_;
    SendingFolder sending_{files_, archive_};
};

} // namespace

TEST_F(SendingFolderTest, AMessageIsOutOfTheArchiveUntilItIsBack) {
    const QString path = sending_.Take(Text("a.EML"), now_);
    EXPECT_FALSE(files_.FileExists(archive_.PathOf(Text("a.EML"))));
    EXPECT_TRUE(path.startsWith(SendingFolderOf(archive_).Text()));
    EXPECT_EQ(files_.Bytes(path), "first");
    sending_.Return(path, Text("a.EML"));
    EXPECT_EQ(files_.Paths(), QStringList{Text("/archive/a.EML")});
}

TEST_F(SendingFolderTest, OneThatComesBackNeverReplacesAnother) {
    const QString path = sending_.Take(Text("a.EML"), now_);
    files_.Add(archive_.PathOf(Text("a.EML")), "second");
    files_.Add(archive_.PathOf(Text("a-2.EML")), "third");
    EXPECT_EQ(sending_.Return(path, Text("a.EML")), Text("a-3.EML"));
    EXPECT_EQ(files_.Bytes(archive_.PathOf(Text("a.EML"))), "second");
    EXPECT_EQ(files_.Bytes(archive_.PathOf(Text("a-2.EML"))), "third");
    EXPECT_EQ(files_.Bytes(archive_.PathOf(Text("a-3.EML"))), "first");
}

TEST_F(SendingFolderTest, WhoTakesTheFolderAwayDoesNoHarm) {
    const QString path = sending_.Take(Text("a.EML"), now_);
    sending_.Return(path, Text("a.EML"));
    ASSERT_TRUE(files_.RemoveFolder(SendingFolderOf(archive_)));
    EXPECT_TRUE(files_.FileExists(sending_.Take(Text("a.EML"), now_)));
}

TEST_F(SendingFolderTest, OneThatIsGoneIsToldWithItsPlace) {
    try {
        sending_.Take(Text("gone.EML"), now_);
        FAIL() << "there is no such message";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Problem(), FileProblem::Missing);
        EXPECT_EQ(error.Path(), archive_.PathOf(Text("gone.EML")));
    }
}

TEST_F(SendingFolderTest, WhatAProgramLeftBehindComesBackMarkedWhenNoneCanBeAtIt) {
    files_.Add(archive_.PathOf(Text("b.EML")), "second");
    files_.Add(SendingFolderOf(archive_).PathOf(Text("foreign.txt")), "x");
    sending_.Take(Text("a.EML"), now_.addSecs(-7200));
    const QString young = sending_.Take(Text("b.EML"), now_);
    EXPECT_EQ(ReturnLeftBehind(files_, archive_, now_.addSecs(-3600)).returned, QStringList{Text("a.uncertain.EML")});
    EXPECT_EQ(files_.Bytes(archive_.PathOf(Text("a.uncertain.EML"))), "first");
    EXPECT_TRUE(files_.FileExists(young));
    EXPECT_TRUE(files_.FileExists(SendingFolderOf(archive_).PathOf(Text("foreign.txt"))));
}

TEST_F(SendingFolderTest, OneOutOfAFolderOfTheArchiveComesBackThere) {
    const QString name = NativePath(Text("new/1.a"));
    files_.Add(archive_.PathOf(name), "seen");
    const QString path = sending_.Take(name, now_.addSecs(-7200));
    EXPECT_TRUE(path.startsWith(SendingFolderOf(archive_).Text()));
    const QString marked = NativePath(Text("new/1.uncertain.a"));
    EXPECT_EQ(ReturnLeftBehind(files_, archive_, now_).returned, QStringList{marked});
    EXPECT_EQ(files_.Bytes(archive_.PathOf(marked)), "seen");
}

TEST_F(SendingFolderTest, OneThatCannotBeBroughtBackDoesNotKeepTheOthers) {
    const QString first = sending_.Take(Text("a.EML"), now_.addSecs(-7200));
    files_.Add(archive_.PathOf(Text("b.EML")), "second");
    sending_.Take(Text("b.EML"), now_.addSecs(-7100));
    files_.FailPath(first, Text("no right"));
    const LeftBehind left = ReturnLeftBehind(files_, archive_, now_);
    EXPECT_EQ(left.returned, QStringList{Text("b.uncertain.EML")});
    EXPECT_EQ(left.errors.size(), 1U);
}

TEST_F(SendingFolderTest, TheFolderGoesWithTheLastOfThem) {
    sending_.Take(Text("a.EML"), now_.addSecs(-7200));
    ReturnLeftBehind(files_, archive_, now_);
    EXPECT_FALSE(files_.FolderExists(SendingFolderOf(archive_)));
    EXPECT_TRUE(ReturnLeftBehind(files_, archive_, now_).returned.isEmpty());
}

TEST(SendingName, HoldsWhenAndWhat) {
    const std::optional<SendingName> name = ParseSendingName(Text("20260615-120000-250-00af3c~Re~ order.EML"));
    ASSERT_TRUE(name);
    EXPECT_EQ(name->name, Text("Re~ order.EML"));
    EXPECT_EQ(name->In(Text("/archive/")), Text("Re~ order.EML"));
    const std::optional<SendingName> inFolder = ParseSendingName(Text("20260615-120000-250-00af3c=cur~1.a:2,S"));
    ASSERT_TRUE(inFolder);
    EXPECT_EQ(inFolder->In(NativePath(Text("/archive/"))), NativePath(Text("cur/1.a:2,S")));
    EXPECT_EQ(name->since, QDateTime(QDate(2026, 6, 15), QTime(12, 0, 0, 250), Qt::UTC));
    for (const char* other :
         {"20260615-120000-250-00af3c=..~x", "20260615-120000-250-00af3c=.hidden~x", "20260615-120000-250-00af3c=~x"}) {
        EXPECT_FALSE(ParseSendingName(Text(other))) << "leads out of the archive: " << other;
    }
    for (const char* other : {"", "a.EML", "20260615-120000-250-00af3c~", "20261315-120000-250-00af3c~a",
                              "20260615-120000-250-00AF3C~a", "x20260615-120000-250-00af3c~a"}) {
        EXPECT_FALSE(ParseSendingName(Text(other))) << other;
    }
}

TEST(UncertainName, KeepsTheEndingAndIsMarkedOnce) {
    EXPECT_EQ(UncertainName(Text("a.b.EML")), Text("a.b.uncertain.EML"));
    EXPECT_EQ(UncertainName(Text("noending")), Text("noending.uncertain"));
    for (const char* name : {"a.uncertain.EML", "a.uncertain-2.EML", "noending.uncertain"}) {
        EXPECT_TRUE(IsUncertainName(Text(name))) << name;
        EXPECT_EQ(UncertainName(Text(name)), Text(name));
    }
    EXPECT_EQ(UncertainName(Text("cur/1.a.host:2,S")), Text("cur/1.a.uncertain.host:2,S"));
    EXPECT_EQ(UncertainName(Text("cur/12345:2,S")), Text("cur/12345.uncertain:2,S"));
    for (const char* name : {"cur/12345.uncertain:2,S", "new/12345.uncertain", "cur/1.uncertain.host:2,FS"}) {
        EXPECT_TRUE(IsUncertainName(Text(name))) << name << ", whatever a mail program has added";
    }
    EXPECT_FALSE(IsUncertainName(Text("uncertain.EML")));
    EXPECT_FALSE(IsUncertainName(Text("a.EML")));
}

} // namespace quellbox
