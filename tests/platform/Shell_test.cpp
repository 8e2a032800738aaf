#include "platform/Shell.h"

#include "tests/support/RealFiles.h"

#include <QDir>
#include <QThread>

namespace quellbox {

namespace {

#ifndef _WIN32

/// Puts a program named xdg-open first in the search path; it writes down its arguments.
class ShellTest : public testing::Test {
protected:
    void SetUp() override {
        qputenv("PATH", folder_.path().toUtf8() + ":" + path_.Before());
        QFile program(folder_.path() + Text("/xdg-open"));
        ASSERT_TRUE(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\nprintf '%s:%s' \"$#\" \"$1\" > '" + ResultPath().toUtf8() + ".part'\nmv '" +
                      ResultPath().toUtf8() + ".part' '" + ResultPath().toUtf8() + "'\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QString ResultPath() const { return folder_.path() + Text("/result"); }

    /// The number of arguments, a colon and the first argument.
    QByteArray Opened(const QString& target) {
        EXPECT_TRUE(Shell().Open(target));
        QFile result(ResultPath());
        for (int attempt = 0; attempt < 500 && !result.exists(); ++attempt) {
            QThread::msleep(10);
        }
        EXPECT_TRUE(result.open(QIODevice::ReadOnly));
        const QByteArray bytes = result.readAll();
        result.remove();
        return bytes;
    }

    QTemporaryDir folder_;

private:
    ChangedVariable path_{"PATH", {}};
};

TEST_F(ShellTest, TargetIsOneArgumentWhateverItHolds) {
    EXPECT_EQ(Opened(Text("https://example.com/?a=b&c=$(id)")), "1:https://example.com/?a=b&c=$(id)");
    EXPECT_EQ(Opened(Text("/mail/two words; rm *.EML")), "1:/mail/two words; rm *.EML");
}

TEST_F(ShellTest, TargetIsNeverAnOption) {
    EXPECT_EQ(Opened(Text("--help.EML")), "1:./--help.EML");
}

TEST_F(ShellTest, NameThatIsNoUtf8IsHandedOnAsAnAddress) {
    EXPECT_EQ(Opened(QString::fromUtf16(u"/mail/gr\uFFFDFCn 1.EML")), "1:file:///mail/gr%FCn%201.EML");
}

TEST_F(ShellTest, NothingCanBeStartedWithoutAProgram) {
    qputenv("PATH", folder_.path().toUtf8());
    ASSERT_TRUE(QFile::remove(folder_.path() + Text("/xdg-open")));
    EXPECT_FALSE(Shell().Open(Text("/mail/1.EML")));
}

TEST_F(ShellTest, EmptyTargetIsNotOpened) {
    EXPECT_FALSE(Shell().Open(QString()));
}

TEST_F(ShellTest, UserNameIsTheLoginName) {
    if (QFile passwords(Text("/etc/passwd")); passwords.open(QIODevice::ReadOnly)) {
        const QByteArray line = Shell().UserName().toUtf8() + ":";
        EXPECT_TRUE(Shell().UserName().isEmpty() || passwords.readAll().contains(line));
    }
}

#endif

} // namespace

} // namespace quellbox
