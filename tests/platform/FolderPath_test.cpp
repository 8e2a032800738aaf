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
    const auto ended = [](const char* path) { return SlashPath(WithSeparator(NativePath(Text(path)))).toStdString(); };
    EXPECT_EQ(ended("/"), "/");
    EXPECT_EQ(ended("/pickup"), "/pickup/");
    EXPECT_EQ(ended("/pickup/"), "/pickup/");
    EXPECT_EQ(ended(""), QString(QDir::separator()).toStdString());
    EXPECT_EQ(ended(R"(\\nas\mail)"), R"(\\nas\mail\)");
    EXPECT_EQ(ended(R"(\\nas\mail\)"), R"(\\nas\mail\)");
    EXPECT_EQ(ended(R"(\\)"), R"(\\)");
    EXPECT_EQ(ended(R"(\\nas/mail/)"), R"(\\nas/mail/\)");
    EXPECT_EQ(WithSeparator(Text("C:/mail/")), Text("C:/mail/")); // which Windows takes as well
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
