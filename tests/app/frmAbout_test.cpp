#include "app/LinkButton.h"
#include "app/frmAbout.h"

#include "tests/support/FakeShell.h"
#include "tests/support/MemoryFileSystem.h"

#include <QAccessible>
#include <QDateTime>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

ProgramInfo Program() {
    ProgramInfo program;
    program.Title = QStringLiteral("Quell & Box");
    program.ProductName = QStringLiteral("Quellbox");
    program.CompanyName = QStringLiteral("Smith & <b>Sons</b>");
    program.Comments = QStringLiteral("Looks & sees.");
    program.FileDescription = QStringLiteral("Spam archive manager");
    program.LegalCopyright = QStringLiteral("Copyright (c) 2026 Smith");
    program.Major = 2;
    program.Minor = 1;
    program.Revision = 37;
    program.WebSite = QStringLiteral("http://www.quellbox.example");
    program.SupportAddress = QStringLiteral("support@quellbox.example");
    program.DownloadPage = QStringLiteral("http://www.quellbox.example/d.htm?a=1&b=2");
    program.ExecutablePath = QStringLiteral("/prog/quellbox");
    return program;
}

class About : public testing::Test {
protected:
    About() {
        files.Add(QStringLiteral("/prog/quellbox"), "x",
                  QDateTime(built, QTime(12, 0)).toMSecsSinceEpoch() * 1'000'000);
        box = std::make_unique<frmAbout>(program, files, shell, nullptr);
        box->show();
        box->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(box.get()));
    }

    QLabel* Label(const char* name) {
        auto* label = box->findChild<QLabel*>(QLatin1String(name));
        EXPECT_NE(label, nullptr) << name;
        return label;
    }

    LinkButton* Link(const char* name) {
        auto* link = box->findChild<LinkButton*>(QLatin1String(name));
        EXPECT_NE(link, nullptr) << name;
        return link;
    }

    std::string Text(const char* name) { return Label(name)->text().toStdString(); }

    QDate built{2026, 3, 9};
    ProgramInfo program = Program();
    MemoryFileSystem files;
    FakeShell shell;
    std::unique_ptr<frmAbout> box;
};

} // namespace

TEST_F(About, SaysWhatTheProgramIs) {
    EXPECT_EQ(box->windowTitle().toStdString(), "About Quell & Box");
    EXPECT_EQ(Text("lblApplication"), "Quellbox by Smith & <b>Sons</b>\n\nLooks & sees.");
    const std::string day = QLocale().toString(built, QLocale::ShortFormat).toStdString();
    EXPECT_EQ(Text("lblVersionInfo"),
              "Version 2.1.37 - Build " + day + "\n\nSpam archive manager\nCopyright (c) 2026 Smith");
    EXPECT_EQ(Text("lblCompany"), "Smith & <b>Sons</b>");
    for (const char* name : {"lblApplication", "lblVersionInfo", "lblCompany"}) {
        EXPECT_EQ(Label(name)->textFormat(), Qt::PlainText) << name;
    }
    EXPECT_FALSE(Label("imgLogo")->pixmap().isNull());
}

TEST_F(About, HeadsItsFourLinks) {
    EXPECT_EQ(Text("lblLinks0"), "Company:");
    EXPECT_EQ(Text("lblLinks1"), "Support:");
    EXPECT_EQ(Text("lblLinks2"), "Downloads:");
    EXPECT_EQ(Text("lblLinks3"), "Feedback:");
    EXPECT_EQ(Link("hypLinks1")->accessibleName().toStdString(), "Support: support@quellbox.example");
    EXPECT_EQ(Link("hypLinks0")->text().toStdString(), "http://www.quellbox.example");
    EXPECT_EQ(Link("hypLinks2")->text().toStdString(), "http://www.quellbox.example/d.htm?a=1&&b=2"); // no mnemonic
    EXPECT_EQ(Link("hypLinks2")->toolTip().toStdString(), "http://www.quellbox.example/d.htm?a=1&b=2");
    const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(Link("hypLinks0"));
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Name).toStdString(), "Company: http://www.quellbox.example");
}

TEST_F(About, TabAndEnterOpenEachLink) {
    EXPECT_TRUE(box->findChild<QPushButton*>(QStringLiteral("btnOK"))->hasFocus());
    for (const char* name : {"hypLinks0", "hypLinks1", "hypLinks2", "hypLinks3"}) {
        QTest::keyClick(box->focusWidget(), Qt::Key_Tab);
        ASSERT_EQ(box->focusWidget(), Link(name));
        QTest::keyClick(box->focusWidget(), Qt::Key_Return);
        EXPECT_TRUE(box->isVisible());
    }
    EXPECT_EQ(shell.Opened(), QStringList({QStringLiteral("http://www.quellbox.example"),
                                           QStringLiteral("mailto:support@quellbox.example?subject=Quellbox"),
                                           QStringLiteral("http://www.quellbox.example/d.htm?a=1&b=2"),
                                           QStringLiteral("http://www.quellbox.example/quellbox/feedback.htm")}));
}

TEST_F(About, AClickOpensALink) {
    QTest::mouseClick(Link("hypLinks3"), Qt::LeftButton);
    EXPECT_EQ(shell.Opened(), QStringList({QStringLiteral("http://www.quellbox.example/quellbox/feedback.htm")}));
}

TEST_F(About, ALinkThatCannotBeOpenedGoesUnreported) {
    shell.SetOpens(false);
    QTest::keyClick(Link("hypLinks0"), Qt::Key_Space);
    EXPECT_EQ(shell.Opened().size(), 1);
    EXPECT_TRUE(box->isVisible());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(About, OkAndEscapeCloseIt) {
    QTest::mouseClick(box->findChild<QPushButton*>(QStringLiteral("btnOK")), Qt::LeftButton);
    EXPECT_FALSE(box->isVisible());
    box->show();
    QTest::keyClick(box.get(), Qt::Key_Escape);
    EXPECT_FALSE(box->isVisible());
}
