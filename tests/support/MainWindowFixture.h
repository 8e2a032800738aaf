#pragma once

#include "app/frmMain.h"
#include "contents/frmRawPane.h"
#include "messages/MessageRow.h"
#include "tests/support/FakeShell.h"
#include "tests/support/FakeVolumes.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/MemoryPasswordStore.h"
#include "tests/support/MemorySettingsStore.h"
#include "tests/support/NativePath.h"

#include <QApplication>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QSignalSpy>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace quellbox {

/// The real main window over an archive in memory, driven by events and looked at by object names.
class MainWindowTest : public testing::Test {
protected:
    static constexpr int patience = 10'000; // ms

    MainWindowTest() {
        Set("ArchiveDir", "/archive/");
        Set("PickupDir", "/pickup/");
        Set("AutoRefresh", "0");
        files_.AddFolder(QStringLiteral("/archive/"));
        files_.AddFolder(QStringLiteral("/pickup/"));
        boxes_.callOnTimeout([this] { CloseErrorBox(); });
        boxes_.start(20);
    }

    void Set(const char* key, const char* value) {
        store_.SetValue(QStringLiteral("Settings"), QLatin1String(key), QLatin1String(value));
    }

    QString Stored(const char* key) const {
        return store_.Value(QStringLiteral("Settings"), QLatin1String(key)).value_or(QStringLiteral("absent"));
    }

    /// A message of `size` bytes whose subject is its name, written `minute` minutes after noon of the clock's day.
    void AddMessage(const char* name, int minute, int size = 100) {
        QByteArray bytes = QByteArray("To: to-") + name + "\nFrom: from-" + name + "\nSubject: about " + name + "\n\n";
        bytes += QByteArray(std::max(0, size - static_cast<int>(bytes.size())), 'x');
        const qint64 modified = noon_.addSecs(60 * minute).toMSecsSinceEpoch() * 1'000'000;
        files_.Add(QStringLiteral("/archive/") + QLatin1String(name), bytes, modified);
    }

    void AddThree() {
        AddMessage("a.eml", 3, 900);
        AddMessage("b.eml", 2, 100);
        AddMessage("c.eml", 1, 1200);
    }

    void Open() {
        window_ = std::make_unique<frmMain>(
            MainPorts{files_, store_, clock_, shell_, pool_, volumes_, passwords_, program_, tray_, loadPatience_});
        connection_ = QObject::connect(window_.get(), &frmMain::Refreshed, [this] { ++refreshes_; });
        window_->show();
        window_->activateWindow();
        // isActiveWindow() would ask the system, which knows it before the window has been told.
        EXPECT_TRUE(QTest::qWaitFor(
            [this] { return QApplication::activeWindow() == window_.get() || !errors_.isEmpty(); }, patience));
    }

    /// Waits until the window has done what it was told, and shows the message; not for that where `settles_` says so.
    void Settle() const {
        const auto isDone = [this] {
            QCoreApplication::processEvents();
            return window_ == nullptr || (!window_->Jobs().IsAtWork() && (!settles_ || !window_->IsLoading()));
        };
        EXPECT_TRUE(QTest::qWaitFor(isDone, patience));
        EXPECT_TRUE(QTest::qWaitFor(isDone, patience)) << "what the end of the one job has begun";
    }

    /// Opens the window and waits until the first refresh is done and its first row is selected.
    void OpenRefreshed() {
        Open();
        EXPECT_TRUE(WaitForRefreshes(1));
        Settle();
    }

    /// Runs `look` once, from the event loop of the next pass while it shows that it is busy.
    void WhileBusy(std::function<void()> look) {
        probe_.callOnTimeout([this, look = std::move(look)] {
            if (!List()->isEnabled()) {
                probe_.stop();
                look();
            }
        });
        probe_.start(1);
    }

    /// Lets the interval of the refresh timer be over.
    void Tick() {
        auto* timer = Find<QTimer>("tmrRefresh");
        ASSERT_TRUE(timer->isActive());
        QTimerEvent event(timer->timerId());
        QCoreApplication::sendEvent(timer, &event);
        Settle();
    }

    bool WaitForRefreshes(int count) {
        return QTest::qWaitFor([this, count] { return refreshes_ >= count; }, patience);
    }

    template <class T>
    T* Find(const char* name) const {
        T* found = window_->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    QAction* Action(const char* name) const { return Find<QAction>(name); }
    QAction* Button(const char* bar, const char* key) const { return Action(qPrintable(Joined(bar, key))); }
    QTreeView* List() const { return Find<QTreeView>("lvwMessages"); }
    QSplitter* Splitter(const char* name) const { return Find<QSplitter>(name); }
    QLabel* PanelView(const char* key) const { return Find<QLabel>(qPrintable(Joined("stbBottom", key))); }

    /// The text of a panel, after what is pending has been painted.
    std::string Panel(const char* key) const {
        QCoreApplication::processEvents();
        return PanelView(key)->text().toStdString();
    }

    /// The keys in list order, as in "a.eml c.eml".
    std::string Keys() const {
        QStringList keys;
        for (int row = 0; row < window_->Messages().Count(); ++row) {
            keys += window_->Messages().Row(row).Key();
        }
        return keys.join(QLatin1Char(' ')).toStdString();
    }

    std::string Cell(int row, Column column) const {
        return List()->model()->index(row, column).data().toString().toStdString();
    }

    std::string SelectedKeys() const {
        QStringList keys;
        for (const QModelIndex& index : List()->selectionModel()->selectedRows()) {
            keys += window_->Messages().Row(index.row()).Key();
        }
        keys.sort();
        return keys.join(QLatin1Char(' ')).toStdString();
    }

    bool IsUnread(int row) const { return List()->model()->index(row, 0).data(MessageListModel::unreadRole).toBool(); }

    QPoint CentreOfRow(int row) const { return List()->visualRect(List()->model()->index(row, ColumnDate)).center(); }

    void ClickRow(int row, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::mouseClick(List()->viewport(), Qt::LeftButton, modifiers, CentreOfRow(row));
        Settle();
    }

    void ClickHeader(Column column) const {
        QHeaderView* header = List()->header();
        const QPoint middle(header->sectionViewportPosition(column) + header->sectionSize(column) / 2,
                            header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, middle);
    }

    /// The pictures of the column headers: "v" down, "^" up, "." blank, "?" any other.
    std::string Arrows() const {
        std::string arrows;
        for (int column = 0; column < ColumnCount; ++column) {
            const auto icon = List()->model()->headerData(column, Qt::Horizontal, Qt::DecorationRole).value<QIcon>();
            const QImage image = icon.pixmap(16, 16).toImage();
            arrows += image == Picture("down")    ? 'v'
                      : image == Picture("up")    ? '^'
                      : image == Picture("blank") ? '.'
                                                  : '?';
        }
        return arrows;
    }

    static QImage Picture(const char* name) {
        return QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name))).pixmap(16, 16).toImage();
    }

    /// Drags the bar of a splitter to a distance from the splitter's first edge.
    void DragBar(const char* name, int distance) const {
        QSplitterHandle* bar = Splitter(name)->handle(1);
        const bool across = Splitter(name)->orientation() == Qt::Horizontal;
        const QPoint from = bar->rect().center();
        const int way = distance - (across ? bar->x() : bar->y());
        const QPoint to = from + (across ? QPoint(way, 0) : QPoint(0, way));
        Send(bar, QEvent::MouseButtonPress, from, Qt::LeftButton);
        Send(bar, QEvent::MouseMove, to, Qt::NoButton);
        Send(bar, QEvent::MouseButtonRelease, to, Qt::LeftButton);
        QCoreApplication::processEvents();
    }

    static void Send(QWidget* widget, QEvent::Type type, QPoint at, Qt::MouseButton button) {
        const bool up = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, at, widget->mapToGlobal(at), button, up ? Qt::NoButton : Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &event);
    }

    QDateTime noon_{QDate(2026, 3, 10), QTime(12, 0)};
    MemoryFileSystem files_;
    MemorySettingsStore store_;
    FixedClock clock_{noon_.addSecs(3600)};
    FakeShell shell_;
    FakeVolumes volumes_;
    MemoryPasswordStore passwords_;
    ProgramInfo program_ = TestProgram(NativePath(QStringLiteral("/prog/")));
    ThreadWorkPool pool_;
    TrayIcon* tray_ = nullptr;
    /// How long a click waits for its message. So long that it always is there after the click, however busy the
    /// machine is; the tests of what comes later shorten it.
    std::chrono::milliseconds loadPatience_{patience};
    QStringList errors_; ///< texts of the message boxes, each of which was closed at once
    int refreshes_ = 0;
    bool settles_ = true;
    std::unique_ptr<frmMain> window_;

private:
    static QString Joined(const char* bar, const char* key) {
        return QLatin1String(bar) + QLatin1Char('_') + QLatin1String(key);
    }

    void CloseErrorBox() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(widget);
            if (box != nullptr && box->isVisible() && box->objectName() == QLatin1String("msgError")) {
                errors_ += box->text();
                box->accept();
            }
        }
    }

    QTimer boxes_;
    QTimer probe_;
    QMetaObject::Connection connection_;
};

} // namespace quellbox
