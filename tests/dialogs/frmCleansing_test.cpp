#include "dialogs/frmCleansing.h"

#include "dialogs/Cleansing.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

class CleansingDialog : public testing::Test {
protected:
    void Open() {
        dialog = std::make_unique<frmCleansing>(state, nullptr);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog.get()));
    }

    template <class Type>
    Type* Find(const char* name) {
        Type* found = dialog->findChild<Type*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    QPushButton* Button(const char* name) { return Find<QPushButton>(name); }
    QRadioButton* Option(int index) { return Find<QRadioButton>(qPrintable(QStringLiteral("optDays%1").arg(index))); }
    std::string Info() { return Find<QLabel>("lblInfo")->text().toStdString(); }

    void Click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(10, widget->height() / 2)); }

    static AppState StateOf(const QString& archive) {
        AppState state;
        state.ArchiveDir = archive;
        return state;
    }

    AppState state = StateOf(QStringLiteral("/mail/R&D <b>spam</b>/"));
    std::unique_ptr<frmCleansing> dialog;
};

} // namespace

TEST_F(CleansingDialog, StartsWithoutAChoice) {
    state.CleansingDays = 7;
    Open();
    EXPECT_EQ(state.CleansingDays, -1);
    EXPECT_FALSE(Button("btnOK")->isEnabled());
    EXPECT_TRUE(Button("btnCancel")->isEnabled());
    EXPECT_TRUE(Button("btnHelp")->isEnabled());
    for (const int index : {0, 1, 2, 7}) {
        EXPECT_FALSE(Option(index)->isChecked());
    }
    EXPECT_EQ(Info(), "/mail/R&D <b>spam</b>/ contains all archived messages put here by the Exchange Intelligent "
                      "Message Filter.\n\nThis cleansing operation helps you to quickly, and permanently, remove "
                      "them.");
    EXPECT_EQ(Find<QLabel>("lblInfo")->textFormat(), Qt::PlainText);
}

TEST_F(CleansingDialog, HasItsTextsAndPicture) {
    Open();
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Cleansing Wizard"));
    EXPECT_EQ(Find<QGroupBox>("fraSelection")->title(), QStringLiteral("&Select"));
    EXPECT_EQ(Option(0)->text(), QStringLiteral("&Every archived message"));
    EXPECT_EQ(Option(1)->text(), QStringLiteral("All, except to&day's messages"));
    EXPECT_EQ(Option(2)->text(), QStringLiteral("All, except the last &two days"));
    EXPECT_EQ(Option(7)->text(), QStringLiteral("Preserve one &week (7 days)"));
    EXPECT_EQ(Option(0)->property("Tag").toString(), QString());
    EXPECT_EQ(Option(7)->property("Tag").toString(),
              QStringLiteral(", except those that arrived during the last seven days."));
    EXPECT_EQ(Button("btnCancel")->text(), QStringLiteral("&Cancel"));
    EXPECT_EQ(Button("btnHelp")->text(), QStringLiteral("&Help"));
    EXPECT_FALSE(Find<QLabel>("imgCleansing")->pixmap().isNull());
    QStringList order;
    QWidget* const first = Option(0);
    for (QWidget* next = first->nextInFocusChain(); next != first; next = next->nextInFocusChain()) {
        if (qobject_cast<QAbstractButton*>(next) != nullptr) {
            order.append(next->objectName());
        }
    }
    EXPECT_EQ(order.join(QLatin1Char(' ')).toStdString(), "optDays1 optDays2 optDays7 btnOK btnCancel btnHelp");
}

TEST_F(CleansingDialog, EachOptionSaysWhatItLeaves) {
    Open();
    const std::string question = "Clean up /mail/R&D <b>spam</b>/\n\nPress OK to remove them all permanently from your "
                                 "system";
    for (const qint16 index : {qint16{7}, qint16{0}, qint16{1}, qint16{2}}) {
        Click(Option(index));
        EXPECT_EQ(state.CleansingDays, index);
        EXPECT_EQ(Info(), question + CleansingOptionTag(index).toStdString());
        EXPECT_TRUE(Button("btnOK")->isEnabled());
    }
}

TEST_F(CleansingDialog, TheArrowKeysChooseAsAClickDoes) {
    Open();
    QTest::keyClick(Option(0), Qt::Key_Space);
    EXPECT_EQ(state.CleansingDays, 0);
    QTest::keyClick(Option(0), Qt::Key_Down);
    EXPECT_EQ(state.CleansingDays, 1);
    EXPECT_TRUE(Option(1)->isChecked());
}

TEST_F(CleansingDialog, OkConfirms) {
    Open();
    Click(Option(2));
    Click(Button("btnOK"));
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_TRUE(state.CleansingConfirmed);
    EXPECT_EQ(state.CleansingDays, 2);
}

TEST_F(CleansingDialog, EnterIsOkOnceAnOptionIsChosen) {
    Open();
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(state.CleansingConfirmed);
    Click(Option(0));
    QTest::keyClick(Option(0), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(state.CleansingConfirmed);
}

TEST_F(CleansingDialog, CancelEscapeAndTheCloseBoxTakeAConfirmationBack) {
    const std::vector<std::function<void()>> ways = {
        [this] { Click(Button("btnCancel")); },
        [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); },
        [this] { dialog->close(); },
    };
    for (const auto& leave : ways) {
        state.CleansingConfirmed = true;
        Open();
        Click(Option(1));
        leave();
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), QDialog::Rejected);
        EXPECT_FALSE(state.CleansingConfirmed);
        EXPECT_EQ(state.CleansingDays, 1) << "only the next dialog resets it";
    }
}

TEST_F(CleansingDialog, HelpLeavesTheDialogAsItIs) {
    Open();
    Click(Button("btnHelp"));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(state.CleansingDays, -1);
    EXPECT_FALSE(Button("btnOK")->isEnabled());
}

TEST_F(CleansingDialog, ALongPathIsBrokenInsteadOfWideningTheDialog) {
    Open();
    const int width = dialog->width();
    const int height = dialog->height();
    state.ArchiveDir = QLatin1Char('/') + QString(300, QLatin1Char('x')) + QLatin1Char('/');
    Open();
    EXPECT_EQ(dialog->width(), width);
    EXPECT_GT(dialog->height(), height);
    auto* label = Find<QLabel>("lblInfo");
    EXPECT_GE(label->height(), label->heightForWidth(label->width()));
    Click(Option(7));
    QApplication::processEvents();
    EXPECT_GE(label->height(), label->heightForWidth(label->width()));
}
