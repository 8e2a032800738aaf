#include "platform/MessagePlaces.h"

#include "platform/RuntimeError.h"
#include "tests/support/ListedFolder.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/NativePath.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

const Folder place(u"/mail"_s);
const MessagePlaces twoFolders{.folders = {u"new"_s, u"cur"_s}, .names = {{}}};

QStringList NamesOf(const std::vector<FolderEntry>& entries) {
    QStringList names;
    for (const FolderEntry& entry : entries) {
        names.append(entry.name);
    }
    names.sort();
    return names;
}

} // namespace

TEST(MessagePlaces, NamesAreComparedWithoutRegardToCase) {
    EXPECT_TRUE(IsMessageName({}, u"a.EML"_s));
    EXPECT_TRUE(IsMessageName({}, u"a.eml"_s));
    EXPECT_FALSE(IsMessageName({}, u"a.eml.gz"_s));
    EXPECT_FALSE(IsMessageName({}, u"quellbox"_s));
    const MessagePlaces some{.names = {{u"spam-"_s, {}}, {{}, u".gz"_s}}};
    EXPECT_TRUE(IsMessageName(some, u"Spam-abc"_s));
    EXPECT_TRUE(IsMessageName(some, u"x.GZ"_s));
    EXPECT_FALSE(IsMessageName(some, u"my spam-abc"_s));
    EXPECT_TRUE(IsMessageName(twoFolders, u"new/anything"_s));
}

TEST(MessagePlaces, EntriesOfFoldersBeginWithTheFolder) {
    MemoryFileSystem files;
    files.Add(u"/mail/new/1.a"_s, "x");
    files.Add(u"/mail/cur/2.a:2,S"_s, "x");
    files.Add(u"/mail/tmp/3.a"_s, "half");
    files.Add(u"/mail/dovecot.index"_s, "x");
    EXPECT_EQ(NamesOf(EntriesOf(files, place, twoFolders)),
              (QStringList{NativePath(u"cur/2.a:2,S"_s), NativePath(u"new/1.a"_s)}));
    EXPECT_TRUE(HasFoldersOf(files, place, twoFolders));
}

TEST(MessagePlaces, OneFolderMayBeMissingButNotAll) {
    MemoryFileSystem files;
    files.Add(u"/mail/cur/2.a"_s, "x");
    EXPECT_EQ(NamesOf(EntriesOf(files, place, twoFolders)), QStringList{NativePath(u"cur/2.a"_s)});
    EXPECT_FALSE(HasFoldersOf(files, place, twoFolders));
    files.FailPath(u"/mail/cur/"_s, u"Permission denied"_s);
    EXPECT_THROW(EntriesOf(files, place, twoFolders), FileError);
    MemoryFileSystem others;
    others.Add(u"/mail/2.eml"_s, "x");
    try {
        EntriesOf(others, place, twoFolders);
        FAIL() << "it has no such folders";
    } catch (const FileError& error) {
        EXPECT_EQ(error.Problem(), FileProblem::Missing);
        EXPECT_TRUE(error.Reason().contains(u"new, cur"_s));
    }
}

TEST(MessagePlaces, AreListedInOrderOfArrivalOverAllFolders) {
    MemoryFileSystem files;
    files.Add(u"/mail/cur/1.a:2,S"_s, "x", 1);
    files.Add(u"/mail/new/2.a"_s, "x", 2);
    files.Add(u"/mail/cur/3.a:2,"_s, "x", 3);
    files.Add(u"/mail/4.eml"_s, "x", 4);
    files.Add(u"/mail/.quellbox-deleted/x/5.eml"_s, "x", 5);
    files.AddFolder(u"/mail/.quellbox-deleted"_s);
    ThreadWorkPool pool;
    std::optional<Listing> listed;
    FolderListing listing(files, pool, place, twoFolders, [&listed](Listing found) { listed = std::move(found); });
    listing.Start();
    ASSERT_TRUE(RunUntil([&listed] { return listed.has_value(); }));
    QStringList names;
    for (const FileEntry& file : listed->files) {
        names.append(file.name);
    }
    EXPECT_EQ(names,
              (QStringList{NativePath(u"cur/1.a:2,S"_s), NativePath(u"new/2.a"_s), NativePath(u"cur/3.a:2,"_s)}));
    EXPECT_EQ(listed->dotFolders, QStringList{u".quellbox-deleted"_s});
    EXPECT_NO_THROW(listed->reader->Open(NativePath(u"new/2.a"_s)));
}

TEST(MessagePlaces, NamesLoseTheirFolder) {
    EXPECT_EQ(NameInFolder(place, NativePath(u"new/1.a"_s)), u"1.a"_s);
    EXPECT_EQ(NameInFolder(place, u"1.a"_s), u"1.a"_s);
    EXPECT_EQ(NameInFolder(Folder(uR"(\\server\mail)"_s), uR"(cur\1.a)"_s), u"1.a"_s);
}

TEST(MessagePlaces, AMessageIsTheSameWhoeverHasSeenIt) {
    const auto isSame = [](const QString& left, const QString& right) {
        return IsSameMessage(place, twoFolders, NativePath(left), NativePath(right));
    };
    EXPECT_TRUE(isSame(u"new/1.a"_s, u"cur/1.a:2,S"_s));
    EXPECT_TRUE(isSame(u"cur/1.a:2,"_s, u"cur/1.a:2,FS"_s));
    EXPECT_FALSE(isSame(u"new/1.a"_s, u"new/1.b"_s));
    EXPECT_FALSE(IsSameMessage(place, {}, u"1.a"_s, u"1.a:2,S"_s)) << "elsewhere a colon says nothing";
}

} // namespace quellbox
