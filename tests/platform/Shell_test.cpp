#include "platform/Shell.h"

#include "tests/support/RealFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>
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

#else

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

/// Registers this program under other names; see core_main.cpp for what it does when it is started so.
class ShellTest : public testing::Test {
protected:
    void SetUp() override { qputenv("QUELLBOX_TEST_ARGUMENTS", QFile::encodeName(ResultPath())); }

    void TearDown() override {
        qunsetenv("QUELLBOX_TEST_ARGUMENTS");
        for (const QString& place : places_) {
            const qsizetype end = place.lastIndexOf(QLatin1Char('\\'));
            QSettings(place.left(end), QSettings::NativeFormat).remove(place.mid(end + 1));
        }
    }

    QString ResultPath() const { return folder_.path() + Text("/result"); }

    static QString Program() { return QDir::toNativeSeparators(QCoreApplication::applicationFilePath()); }

    void Register(const QString& place, const QString& key, const QString& value) {
        places_ += place;
        QSettings registry(place, QSettings::NativeFormat);
        registry.setValue(key, value);
    }

    /// The arguments that the started program got, as one text.
    QString Arguments() const {
        QFile result(ResultPath());
        for (int attempt = 0; attempt < 1000 && !result.exists(); ++attempt) {
            QThread::msleep(10);
        }
        EXPECT_TRUE(result.open(QIODevice::ReadOnly));
        return QString::fromUtf8(result.readAll());
    }

    QTemporaryDir folder_;

private:
    QStringList places_;
};

TEST_F(ShellTest, MessageIsHandedToTheMailProgramWithoutQuotes) {
    const QString programs = Text(R"(HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\)");
    Register(programs + Text("msimn.exe"), Text("."), Program());
    Register(programs + Text("msimn"), Text("."), Program()); // Wine does not add the ending
    EXPECT_TRUE(Shell().OpenMessage(Text("C:\\two words\\Gr\u00FC\u00DFe &calc.EML")));
    EXPECT_EQ(Arguments(), Text("/eml:C:\\two words\\Gr\u00FC\u00DFe &calc.EML"));
}

TEST_F(ShellTest, MissingMailProgramIsReportedAndNothingElse) {
    EXPECT_FALSE(Shell().OpenMessage(Text(R"(C:\mail\1.EML)")));
}

TEST_F(ShellTest, AddressGoesToTheProgramForItsScheme) {
    const QString scheme = Text(R"(HKEY_LOCAL_MACHINE\Software\Classes\quellbox-test)");
    Register(scheme, Text("URL Protocol"), QString());
    Register(scheme + Text(R"(\shell\open\command)"), Text("."), QLatin1Char('"') + Program() + Text(R"(" "%1")"));
    EXPECT_TRUE(Shell().Open(Text("quellbox-test://example.com/?a=b&c=$(id)%20x")));
    EXPECT_EQ(Arguments(), Text(R"("quellbox-test://example.com/?a=b&c=$(id)%20x")"));
}

TEST_F(ShellTest, WhatIsNotThereIsNotOpened) {
    EXPECT_FALSE(Shell().Open(folder_.path() + Text("/none.EML")));
    EXPECT_FALSE(Shell().Open(QString()));
}

TEST_F(ShellTest, UserNameIsTheLoginName) {
    EXPECT_EQ(Shell().UserName().compare(qEnvironmentVariable("USERNAME"), Qt::CaseInsensitive), 0);
}

#endif

} // namespace

} // namespace quellbox
