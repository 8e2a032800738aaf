#pragma once

#include "dialogs/frmOptions.h"
#include "tests/support/FakeVolumes.h"
#include "tests/support/MemoryFileSystem.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QClipboard>
#include <QGroupBox>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace quellbox {

class Options : public testing::Test {
protected:
    Options() {
        state.ArchiveDir = QStringLiteral("/archive/");
        state.PickupDir = QStringLiteral("/pickup/");
        state.RefreshInterval = 30;
        state.AutoRefresh = 1;
    }

    void Open(int tab = 0) {
        state.OptionsTab = tab;
        Reopen();
    }

    void Reopen() {
        OptionsCalls calls;
        calls.filterTaken = [this](bool changed) { filterTaken.append(changed); };
        calls.selectDirectory = [this](qint16 index) {
            selected.append(index);
            (index == 0 ? state.ArchiveDir : state.PickupDir) = QStringLiteral("/new&%1/").arg(index);
            return index == 0 ? state.ArchiveDir : state.PickupDir;
        };
        calls.maintainWhitelist = [this] { ++whitelists; };
        calls.keepPassword = [this](const QString& password) { passwords.append(password); };
        dialog = std::make_unique<frmOptions>(files, pool, program, state, std::move(calls), nullptr);
        dialog->show();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }

    template <class T>
    T* Find(const char* name) const {
        T* found = dialog->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    QTabWidget* Tabs() const { return Find<QTabWidget>("tbsOptions"); }
    QRadioButton* Option(const char* name) const { return Find<QRadioButton>(name); }
    QCheckBox* Check(const char* name) const { return Find<QCheckBox>(name); }
    QLineEdit* Interval() const { return Find<QLineEdit>("txtRefreshInterval"); }
    QSlider* Slider() const { return Find<QSlider>("sliRefreshInterval"); }
    QWidget* Focus() const { return dialog->focusWidget(); }

    static void Click(QWidget* widget) {
        ASSERT_TRUE(widget->isVisible() && widget->isEnabled()) << widget->objectName().toStdString();
        // An option button or a check box listens at its mark and its text, which begin at its left edge.
        const QPoint left(10, widget->height() / 2);
        const bool hasMark =
            qobject_cast<QRadioButton*>(widget) != nullptr || qobject_cast<QCheckBox*>(widget) != nullptr;
        QTest::mouseClick(widget, Qt::LeftButton, {}, hasMark ? left : QPoint());
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(Focus(), key, modifiers); }

    /// Types into the interval and leaves it.
    void Enter(const QString& text) {
        Interval()->setFocus();
        Interval()->selectAll();
        QTest::keyClick(Interval(), Qt::Key_Backspace);
        QTest::keyClicks(Interval(), text);
        Slider()->setFocus();
    }

    /// The frames that are shown, and of these the enabled ones, as in "2/2".
    std::string Frames() const {
        QString shown;
        QString enabled;
        for (int index = 0; index < 7; ++index) {
            const auto* frame = Find<QWidget>(qPrintable(QStringLiteral("fraOptions%1").arg(index)));
            shown += frame->isVisible() ? QString::number(index) : QString();
            enabled += frame->isEnabled() ? QString::number(index) : QString();
        }
        return (shown + QLatin1Char('/') + enabled).toStdString();
    }

    /// The names of the checked option buttons, sorted.
    std::string CheckedOptions() const {
        QStringList names;
        for (const QRadioButton* button : dialog->findChildren<QRadioButton*>()) {
            if (button->isChecked()) {
                names += button->objectName();
            }
        }
        names.sort();
        return names.join(QLatin1Char(' ')).toStdString();
    }

    MemoryFileSystem files;
    ThreadWorkPool pool;
    ProgramInfo program = TestProgram(QStringLiteral("/prog/"));
    AppState state;
    QStringList passwords; ///< that were to be kept
    QList<bool> filterTaken;
    QList<qint16> selected;
    int whitelists = 0;
    std::unique_ptr<frmOptions> dialog;
};

} // namespace quellbox
