#pragma once

#include "app/BarChart.h"
#include "app/frmOverview.h"
#include "tests/support/AccessibleNames.h"
#include "tests/support/DialogVisit.h"
#include "tests/support/RealFolderWindow.h"
#include "whitelist/WhitelistStore.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>
#include <QTreeWidget>

#include <utility>

namespace quellbox {

/// The overview beside the real main window over two real folders.
class OverviewDeskTest : public RealFolderWindowTest {
protected:
    static QByteArray Message(const QByteArray& sender, const QByteArray& subject, const QByteArray& scl) {
        return "X-SENDER: " + sender + "\r\nX-SCL: " + scl +
               " 99.00%\r\nFrom: f@x.org\r\nTo: ann@x.org\r\nSubject: " + subject + "\r\n\r\ntext\r\n";
    }

    /// Two messages of a.example and one of b.example.
    void OpenThree() {
        Write(Archive(Name(1)), Message("x@a.example", "Invoice 1", "9"));
        Write(Archive(Name(2)), Message("y@a.example", "Invoice 2", "9"));
        Write(Archive(Name(3)), Message("z@b.example", "Other", "7"));
        Open();
    }

    frmOverview* Overview() { return Find<frmOverview>("frmOverview"); }

    template <class Type>
    Type* In(const char* name) {
        auto* found = Overview()->findChild<Type*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    BarChart* Chart(const char* name) { return In<BarChart>(name); }

    void ShowOverview(qint64 messages) {
        Command("mnuToolsOverview")->trigger();
        ASSERT_NE(Overview(), nullptr);
        ASSERT_TRUE(WaitForCount(messages));
        ASSERT_TRUE(QTest::qWaitFor([this] {
            Overview()->activateWindow();
            return QApplication::activeWindow() == Overview();
        }));
    }

    /// Waits until the pictures are of so many messages.
    bool WaitForCount(qint64 messages) {
        return QTest::qWaitFor([this, messages] {
            qint64 counted = 0;
            for (const OverviewBar& bar : Chart("chtSenders")->Picture().bars) {
                counted += bar.Count();
            }
            return counted == messages;
        });
    }

    void ClickBar(const char* chart, OverviewPlace place, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(Chart(chart), Qt::LeftButton, modifiers, Chart(chart)->RectOf(place).center());
    }

    /// The subjects of the selected messages.
    std::string Selected() {
        QStringList subjects;
        for (const RowRange& range : List()->SelectedRanges()) {
            for (int row = range.first; row <= range.last; ++row) {
                subjects.append(window->Messages().Row(row).Cell(ColumnSubject));
            }
        }
        return subjects.join(QStringLiteral(", ")).toStdString();
    }

    /// Chooses a toleration level in the options.
    void ChooseLevel(const char* option) {
        const DialogVisit visit("frmOptions", [option](QDialog& dialog) {
            auto* button = dialog.findChild<QAbstractButton*>(QLatin1String(option));
            auto* tabs = dialog.findChild<QTabWidget*>(QStringLiteral("tbsOptions"));
            for (int tab = 0; tab < tabs->count(); ++tab) {
                if (tabs->widget(tab)->isAncestorOf(button)) {
                    tabs->setCurrentIndex(tab);
                }
            }
            button->click();
            dialog.findChild<QAbstractButton*>(QStringLiteral("cmdOK"))->click();
        });
        Command("mnuToolsOptions")->trigger();
        EXPECT_TRUE(visit.Happened());
        Settle();
    }

    /// Types words that narrow the list, or with an empty text shows all again.
    void Narrow(const char* words) {
        auto* field = Find<QLineEdit>("txtQuick");
        if (!field->isVisible()) {
            Command("mnuEditQuick")->trigger();
        }
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, QLatin1String(words));
        Settle();
    }

    bool WaitForCaption(const char* caption) {
        return QTest::qWaitFor([this, caption] { return Overview()->windowTitle() == QLatin1String(caption); });
    }

    /// The entries of the menu that pops up there.
    std::string MenuAt(BarChart* chart, QPoint at, QContextMenuEvent::Reason reason) {
        if (reason == QContextMenuEvent::Mouse) {
            QTest::mouseClick(chart, Qt::RightButton, Qt::NoModifier, at);
        }
        QContextMenuEvent event(reason, at, chart->mapToGlobal(at));
        QApplication::sendEvent(chart, &event);
        QStringList entries;
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            for (const QAction* action : menu->actions()) {
                entries.append(action->text());
            }
            menu->close();
        }
        return entries.join(u'|').toStdString();
    }

    static void AddToWhitelist(QDialog& dialog) {
        dialog.findChild<QPushButton*>(QStringLiteral("btnAdd"))->click();
        dialog.findChild<QPushButton*>(QStringLiteral("btnOK"))->click();
    }

    std::string Told() { return In<QLabel>("lblTold")->text().toStdString(); }

    /// Unblocks the messages of the first sender domain, until both of its senders are listed below the pictures.
    void UnblockFirstDomain() {
        ClickBar("chtSenders", {0});
        Command("mnuActionsUnblock")->trigger();
        Settle();
        ASSERT_TRUE(QTest::qWaitFor([this] { return Unblocked().size() == 2; }));
    }

    QStringList Unblocked() {
        QStringList lines;
        const auto* list = In<QTreeWidget>("lvwUnblocked");
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            lines.append(list->topLevelItem(row)->text(0) + QLatin1Char(' ') + list->topLevelItem(row)->text(1));
        }
        return lines;
    }
};

} // namespace quellbox
