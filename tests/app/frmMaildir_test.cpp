#include "tests/support/DialogVisit.h"
#include "tests/support/RealFolderWindow.h"

#include <QAction>
#include <QDir>
#include <QToolButton>
#include <QTreeWidget>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

/// The real window over a real Maildir.
class MaildirWindow : public RealFolderWindowTest {
protected:
    MaildirWindow() {
        for (const QString& folder : {u"new"_s, u"cur"_s, u"tmp"_s}) {
            QDir(Archive()).mkdir(folder);
        }
        store.SetValue(u"Settings"_s, u"ServerProfile"_s, u"maildir"_s);
        store.SetValue(u"Settings"_s, u"KeepDeletedDays"_s, u"30"_s);
        historyFile = root.path() + u"/history.sqlite"_s;
        Deliver(u"new/1.a.host"_s, 1);
        Deliver(u"cur/2.a.host"_s, 2);
        Deliver(u"tmp/3.a.host"_s, 3);
        Deliver(u"dovecot.index"_s, 4);
    }

    static QByteArray Spam(int number) {
        const QByteArray digit = QByteArray::number(number);
        return "Return-Path: <bounce" + digit + "@shop.test>\nX-Original-To: jo@x.org\nX-Spam-Status: Yes, score=1" +
               digit + ".5\nReceived: by x.org\nFrom: f@shop.test\nTo: jo@x.org\nSubject: Mail " + digit + "\n\nbody\n";
    }

    void Deliver(const QString& name, int number) { Write(Archive(name), Spam(number)); }

    void Do(const char* command) {
        Activate();
        Command(command)->trigger();
        Settle();
    }

    void Undo() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return Command("mnuEditUndo")->isEnabled(); }));
        const int before = refreshes;
        const auto connection = QObject::connect(window.get(), &frmMain::Refreshed, [this] { ++refreshes; });
        Do("mnuEditUndo");
        EXPECT_TRUE(QTest::qWaitFor([this, before] { return refreshes > before; }));
        QObject::disconnect(connection);
        Settle();
    }

    /// The keys of the list with slashes, which they have on Windows as backslashes.
    QStringList Listed() {
        QStringList keys = Keys();
        keys.replaceInStrings(u"\\"_s, u"/"_s);
        keys.sort();
        return keys;
    }

    int refreshes = 0;
};

} // namespace

TEST_F(MaildirWindow, ListsWhatIsNewAndWhatWasSeen) {
    Open();
    EXPECT_EQ(Listed(), (QStringList{u"cur/2.a.host"_s, u"new/1.a.host"_s}));
    const MessageRow& row = window->Messages().Row(0);
    EXPECT_EQ(row.Cell(ColumnSubject), u"Mail 1"_s);
    EXPECT_EQ(row.Tag(), u"bounce1@shop.test"_s);
    EXPECT_EQ(row.Cell(ColumnScl), u"11.5"_s);
    Click(0);
    EXPECT_TRUE(Raw()->toPlainText().contains(u"Return-Path"_s));
}

TEST_F(MaildirWindow, WhatIsDeletedComesBackIntoItsFolder) {
    Open();
    Do("mnuEditSelectAll");
    Do("mnuActionsDelete");
    EXPECT_EQ(Keys(), QStringList());
    EXPECT_FALSE(QFileInfo::exists(Archive(u"new/1.a.host"_s)));
    Undo();
    EXPECT_EQ(Listed(), (QStringList{u"cur/2.a.host"_s, u"new/1.a.host"_s}));
    EXPECT_EQ(Read(Archive(u"new/1.a.host"_s)), Spam(1));
    EXPECT_EQ(Read(Archive(u"cur/2.a.host"_s)), Spam(2));
}

TEST_F(MaildirWindow, WhatIsUnblockedHasAnEndingThatServersTakeUpAndComesBack) {
    Open();
    Click(0);
    Do("mnuActionsUnblock");
    EXPECT_EQ(Read(Pickup(u"1.a.host.eml"_s)), Spam(1));
    EXPECT_FALSE(QFileInfo::exists(Archive(u"new/1.a.host"_s)));
    Undo();
    EXPECT_EQ(Read(Archive(u"new/1.a.host"_s)), Spam(1));
    EXPECT_FALSE(QFileInfo::exists(Pickup(u"1.a.host.eml"_s)));
}

TEST_F(MaildirWindow, TheNextRefreshFindsWhatCameSince) {
    Open();
    QFile(Archive(u"cur/2.a.host"_s)).rename(Archive(u"new/2.a.host"_s)); // another program changes its mind
    Deliver(u"new/4.a.host"_s, 4);
    Do("mnuAcRefresh");
    EXPECT_EQ(Listed(), (QStringList{u"new/1.a.host"_s, u"new/2.a.host"_s, u"new/4.a.host"_s}));
}

TEST_F(MaildirWindow, WhatAnotherProgramHasRenamedIsNotToldAsDeleted) {
    Open();
    ASSERT_TRUE(QFile(Archive(u"new/1.a.host"_s)).rename(Archive(u"cur/1.a.host"_s)));
    Click(0);
    Do("mnuActionsDelete");
    EXPECT_EQ(Read(Archive(u"cur/1.a.host"_s)), Spam(1));
    ASSERT_TRUE(Find<QToolButton>("btnFailures")->isVisible());
    QString reason;
    const DialogVisit visit("frmFailures", [&reason](QDialog& dialog) {
        const auto* list = dialog.findChild<QTreeWidget*>(u"lvwFailures"_s);
        reason = list != nullptr && list->topLevelItemCount() == 1 ? list->topLevelItem(0)->text(1) : QString();
        dialog.reject();
    });
    Find<QToolButton>("btnFailures")->click();
    EXPECT_TRUE(reason.contains(u"renamed"_s)) << reason.toStdString();
}

TEST_F(MaildirWindow, AFolderThatIsNoMaildirIsTold) {
    QDir(Archive(u"new"_s)).removeRecursively();
    QDir(Archive(u"cur"_s)).removeRecursively();
    Open();
    EXPECT_EQ(Keys(), QStringList());
    const QString info = window->Panels().Info().text;
    EXPECT_TRUE(info.contains(u"new, cur"_s)) << info.toStdString();
}

} // namespace quellbox
