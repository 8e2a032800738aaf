#include "platform/WindowsPath.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

std::string Literal(const char* path) {
    return LiteralWindowsPath(QString::fromUtf8(path)).toStdString();
}

TEST(WindowsPath, DrivePath) {
    EXPECT_EQ(Literal(R"(C:\mail\a.EML)"), R"(\\?\C:\mail\a.EML)");
    EXPECT_EQ(Literal("z:/mail/a.EML"), R"(\\?\z:\mail\a.EML)");
    EXPECT_EQ(Literal(R"(C:\mail\)"), R"(\\?\C:\mail)");
}

TEST(WindowsPath, RootKeepsItsSeparator) {
    EXPECT_EQ(Literal(R"(C:\)"), R"(\\?\C:\)");
    EXPECT_EQ(Literal(R"(\\server\share)"), R"(\\?\UNC\server\share\)");
    EXPECT_EQ(Literal(R"(\\server\share\)"), R"(\\?\UNC\server\share\)");
}

TEST(WindowsPath, SharePath) {
    EXPECT_EQ(Literal(R"(\\server\share\mail\a.EML)"), R"(\\?\UNC\server\share\mail\a.EML)");
    EXPECT_EQ(Literal("//server/share/mail/"), R"(\\?\UNC\server\share\mail)");
}

TEST(WindowsPath, StepsAreTakenButNeverAboveTheRoot) {
    EXPECT_EQ(Literal(R"(C:\mail\.\spam\..\a.EML)"), R"(\\?\C:\mail\a.EML)");
    EXPECT_EQ(Literal(R"(C:\..\..\a.EML)"), R"(\\?\C:\a.EML)");
    EXPECT_EQ(Literal(R"(\\server\share\..\..\a.EML)"), R"(\\?\UNC\server\share\a.EML)");
    EXPECT_EQ(Literal(R"(C:\mail\\a.EML)"), R"(\\?\C:\mail\a.EML)");
}

TEST(WindowsPath, NamesThatTheSystemWouldChangeStay) {
    EXPECT_EQ(Literal(R"(C:\mail\NUL.EML)"), R"(\\?\C:\mail\NUL.EML)");
    EXPECT_EQ(Literal(R"(C:\mail\a. )"), R"(\\?\C:\mail\a. )");
    EXPECT_EQ(Literal(R"(C:\mail\...)"), R"(\\?\C:\mail\...)");
}

TEST(WindowsPath, LiteralPathsAndDevicesStay) {
    EXPECT_EQ(Literal(R"(\\?\C:\mail\..\a)"), R"(\\?\C:\mail\..\a)");
    EXPECT_EQ(Literal(R"(\\.\pipe\a)"), R"(\\.\pipe\a)");
}

TEST(WindowsPath, PathThatDependsOnACurrentFolderHasNoSuchForm) {
    for (const char* path : {"", "a.EML", R"(mail\a.EML)", R"(\mail\a.EML)", "C:", "C:a.EML", "1:\\a", "C"}) {
        EXPECT_EQ(Literal(path), "") << path;
    }
}

} // namespace

} // namespace quellbox
