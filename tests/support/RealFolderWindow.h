#pragma once

#include "app/MessageListView.h"
#include "app/frmMain.h"
#include "contents/frmRawPane.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/FakeShell.h"
#include "tests/support/FakeVolumes.h"
#include "tests/support/MemoryPasswordStore.h"
#include "tests/support/MemorySettingsStore.h"

#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace quellbox {

/// The real main window over two real folders.
class RealFolderWindowTest : public testing::Test {
protected:
    RealFolderWindowTest() {
        QDir(root.path()).mkdir(QStringLiteral("archive"));
        QDir(root.path()).mkdir(QStringLiteral("pickup"));
        const QString section = QStringLiteral("Settings");
        store.SetValue(section, QStringLiteral("ArchiveDir"), Archive());
        store.SetValue(section, QStringLiteral("PickupDir"), Pickup());
        store.SetValue(section, QStringLiteral("TolerationLevel"), QStringLiteral("1"));
        store.SetValue(section, QStringLiteral("MainWidth"), QStringLiteral("10500"));
        store.SetValue(section, QStringLiteral("MainHeight"), QStringLiteral("9000"));
    }

    QString Archive(const QString& name = {}) const { return root.path() + QStringLiteral("/archive/") + name; }
    QString Pickup(const QString& name = {}) const { return root.path() + QStringLiteral("/pickup/") + name; }

    static QString Name(int number) { return QStringLiteral("m%1.EML").arg(number, 4, 10, QLatin1Char('0')); }

    static QByteArray Mail(int number) {
        return "X-SENDER: Sender" + QByteArray::number(number) +
               "@Example.com\r\nFrom: Someone <f@x.org>\r\nTo: b@x.org\r\n"
               "Subject: Mail " +
               QByteArray::number(number) + "\r\n\r\nfirst line\r\nsecond line\r\n";
    }

    static void Write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    static QByteArray Read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Shows the window over `count` messages of one second: how long they took to write must not order the list.
    void Open(int count) {
        const QDateTime arrival = QDateTime::currentDateTime();
        for (int number = 1; number <= count; ++number) {
            Write(Archive(Name(number)), Mail(number));
            QFile file(Archive(Name(number)));
            ASSERT_TRUE(file.open(QIODevice::ReadWrite));
            ASSERT_TRUE(file.setFileTime(arrival, QFileDevice::FileModificationTime));
        }
        Open();
    }

    void Open() {
        window = std::make_unique<frmMain>(MainPorts{*files, store, *clock, shell, pool, volumes, passwords, program,
                                                     nullptr, loadPatience, Teller(), true, historyFile});
        window->show();
        Activate();
        window->mnuAcRefresh_Click();
        Settle();
        window->Messages().sort(ColumnSubject, Qt::AscendingOrder);
    }

    /// Brings the window to the front, as a click on its frame would, also where a box comes up beside it meanwhile.
    void Activate() {
        ASSERT_TRUE(QTest::qWaitFor([this] {
            window->activateWindow();
            return QApplication::activeWindow() == window.get();
        }));
    }

    /// Waits until the window has done what it was told, and shows it.
    void Settle() const {
        const auto isDone = [this] {
            QCoreApplication::processEvents();
            return !window->Jobs().IsAtWork() && !window->IsLoading();
        };
        EXPECT_TRUE(QTest::qWaitFor(isDone, 60'000));
    }

    template <class Type>
    Type* Find(const char* name) {
        return window->findChild<Type*>(QLatin1String(name));
    }

    MessageListView* List() { return Find<MessageListView>("lvwMessages"); }
    RawPane* Raw() { return Find<RawPane>("rtfRaw"); }
    QTreeWidget* Tree() { return Find<QTreeWidget>("trvMessage"); }
    QAction* Command(const char* name) { return Find<QAction>(name); }

    void Click(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        const QModelIndex index = window->Messages().index(row, 0);
        List()->scrollTo(index);
        QTest::mouseClick(List()->viewport(), Qt::LeftButton, modifiers, List()->visualRect(index).center());
        Settle();
    }

    QStringList Keys() {
        QStringList keys;
        for (int row = 0; row < window->Messages().Count(); ++row) {
            keys.append(window->Messages().Row(row).Key());
        }
        return keys;
    }

    /// What the user is told, where a test looks at that; nothing else is told then.
    std::function<void(const QString&)> Teller() {
        if (historyFile.isEmpty() || isToldInBoxes) {
            return {};
        }
        return [this](const QString& text) { told.append(text); };
    }

    QTemporaryDir root;
    QString historyFile; ///< where a test wants the history to be kept
    QStringList told;
    bool isToldInBoxes = false;
    std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    MemorySettingsStore store;
    std::unique_ptr<Clock> clock = MakeClock();
    FakeShell shell;
    FakeVolumes volumes;
    MemoryPasswordStore passwords;
    ProgramInfo program = TestProgram(root.path() + QStringLiteral("/program/"));
    ThreadWorkPool pool;
    /// How long a click waits for its message. So long that it always is there after the click, however busy the
    /// machine is; the tests of what comes later shorten it.
    std::chrono::milliseconds loadPatience{60'000};
    std::unique_ptr<frmMain> window;
};

} // namespace quellbox
