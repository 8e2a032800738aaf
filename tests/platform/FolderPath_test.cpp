#include "platform/FolderPath.h"

#include "tests/support/NativePath.h"

#include <QDir>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

TEST(FolderPath, SeparatorsAtTheEnd) {
    const auto ended = [](const char* path) { return SlashPath(Folder(NativePath(Text(path)))).toStdString(); };
    EXPECT_EQ(ended("/"), "/");
    EXPECT_EQ(ended("/pickup"), "/pickup/");
    EXPECT_EQ(ended("/pickup/"), "/pickup/");
    EXPECT_EQ(ended(R"(\\nas\mail)"), R"(\\nas\mail\)");
    EXPECT_EQ(ended(R"(\\nas\mail\)"), R"(\\nas\mail\)");
    EXPECT_EQ(ended(R"(\\)"), R"(\\)");
    EXPECT_EQ(ended(R"(\\nas/mail/)"), R"(\\nas/mail/\)");
    EXPECT_EQ(Folder(Text("C:/mail/")).Text(), Text("C:/mail/")); // which Windows takes as well
}

TEST(FolderPath, NoFolderStaysNone) {
    EXPECT_TRUE(Folder().IsEmpty());
    EXPECT_TRUE(Folder(QString()).IsEmpty());
    EXPECT_EQ(Folder(QString()).Text(), QString());
}

TEST(FolderPath, NamesAreJoinedWithTheSeparatorOfTheFolder) {
    EXPECT_EQ(Folder(Text("/mail")).PathOf(Text("a.EML")), Text("/mail") + QDir::separator() + Text("a.EML"));
    EXPECT_EQ(Folder(Text("/mail/")).PathOf(Text("a.EML")), Text("/mail/a.EML"));
    EXPECT_EQ(Folder(Text(R"(\\nas\mail)")).PathOf(Text("a.EML")), Text(R"(\\nas\mail\a.EML)"));
}

TEST(FolderPath, FoldersAreEqualByTheirTexts) {
    const Folder folder(NativePath(Text("/mail")));
    EXPECT_TRUE(folder == Folder(NativePath(Text("/mail/"))));
    EXPECT_TRUE(folder == folder.Text());
    EXPECT_TRUE(folder != NativePath(Text("/mail")));
}

TEST(FolderPath, OnlyAFullLocalPathHasARoot) {
    EXPECT_EQ(RootOf(NativePath(Text("/"))), NativePath(Text("/")));
    EXPECT_EQ(RootOf(NativePath(Text("/home/mail/"))), NativePath(Text("/")));
    for (const char* path : {"", "home", R"(\\nas\mail)", "x:file"}) {
        EXPECT_EQ(RootOf(Text(path)), QString()) << path;
    }
}

} // namespace

} // namespace quellbox
