#include "dialogs/frmCleansing.h"

#include "dialogs/CleansingTexts.h"
#include "tests/support/CallGate.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemoryFileSystem.h"

#include <QAccessible>
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
        dialog = std::make_unique<frmCleansing>(CleansingPorts{files, pool, clock}, state, nullptr);
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
    FixedClock clock{QDateTime(QDate(2026, 6, 15), QTime(12, 0))};
    MemoryFileSystem files;
    ThreadWorkPool pool;
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

namespace {

/// Files in memory of which the status is known only when the gate lets the call pass.
class GatedFiles : public MemoryFileSystem {
public:
    GatedFiles(const MemoryFileSystem& files, CallGate& gate) : files_(files), gate_(gate) {}

    std::vector<FolderEntry> Entries(const QString& folder) const override { return files_.Entries(folder); }
    std::optional<FileStatus> Status(const QString& path) const override {
        gate_.Pass(0);
        return files_.Status(path);
    }

private:
    const MemoryFileSystem& files_;
    CallGate& gate_;
};

class CleansingDialogPreview : public CleansingDialog {
protected:
    ~CleansingDialogPreview() override {
        dialog.reset();
        pool.WaitForDone();
    }

    void Add(const char* name, int days, int size) {
        const QDateTime modified(clock.Now().date().addDays(-days), QTime(12, 0));
        files.Add(state.ArchiveDir + QLatin1String(name), QByteArray(size, 'x'),
                  modified.toMSecsSinceEpoch() * 1'000'000);
    }

    /// Messages of three days, of a thousand, two thousand and three thousand bytes.
    void AddThree() {
        Add("a.EML", 0, 1000);
        Add("b.EML", 1, 2000);
        Add("c.EML", 7, 3000);
    }

    std::string Preview() { return Find<QLabel>("lblPreview")->text().toStdString(); }
    std::string Described(int index) { return Option(index)->accessibleDescription().toStdString(); }

    void WaitUntilCounted() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return Described(0) != "Counting..."; }, 10'000));
    }

    std::string Day(int days) const {
        return QLocale().toString(clock.Now().date().addDays(-days), QLocale::ShortFormat).toStdString();
    }
};

} // namespace

TEST_F(CleansingDialogPreview, SaysNothingBeforeAChoice) {
    AddThree();
    Open();
    WaitUntilCounted();
    EXPECT_EQ(Preview(), "");
    EXPECT_EQ(Find<QLabel>("lblPreview")->textFormat(), Qt::PlainText);
}

TEST_F(CleansingDialogPreview, FollowsTheChoiceAtOnce) {
    AddThree();
    Open();
    WaitUntilCounted();
    const int calls = files.CallCount();
    Option(0)->click();
    EXPECT_EQ(Preview(), "3 messages (6.0 KB) from " + Day(7) + " to " + Day(0) + " would be removed.");
    Option(1)->click();
    EXPECT_EQ(Preview(), "2 messages (5.0 KB) from " + Day(7) + " to " + Day(1) + " would be removed.");
    Option(7)->click();
    EXPECT_EQ(Preview(), "One message (3.0 KB) of " + Day(7) + " would be removed.");
    EXPECT_EQ(files.CallCount(), calls) << "all is known";
}

TEST_F(CleansingDialogPreview, NothingIsSaidToo) {
    Add("a.EML", 0, 10);
    Open();
    WaitUntilCounted();
    Option(1)->click();
    EXPECT_EQ(Preview(), "Nothing would be removed.");
}

TEST_F(CleansingDialogPreview, SaysThatItCountsWhileTheArchiveIsSlowAndHoldsUpNothing) {
    AddThree();
    CallGate gate;
    const GatedFiles slow(files, gate);
    for (const char* button : {"btnOK", "btnCancel"}) {
        dialog = std::make_unique<frmCleansing>(CleansingPorts{slow, pool, clock}, state, nullptr);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog.get()));
        ASSERT_TRUE(QTest::qWaitFor([&gate] { return gate.MostInside() > 0; }, 10'000));
        Option(1)->click();
        EXPECT_EQ(Preview(), "Counting...");
        EXPECT_TRUE(Button("btnOK")->isEnabled());
        Button(button)->click();
        EXPECT_FALSE(dialog->isVisible());
        dialog.reset();
    }
    gate.LetAll();
    pool.WaitForDone();
}

TEST_F(CleansingDialogPreview, TheNumberComesToAChoiceThatWasMadeBefore) {
    AddThree();
    CallGate gate;
    const GatedFiles slow(files, gate);
    dialog = std::make_unique<frmCleansing>(CleansingPorts{slow, pool, clock}, state, nullptr);
    Option(7)->click();
    gate.LetAll();
    EXPECT_TRUE(QTest::qWaitFor([this] { return Preview() != "Counting..."; }, 10'000));
    EXPECT_EQ(Preview(), "One message (3.0 KB) of " + Day(7) + " would be removed.");
    dialog.reset();
    pool.WaitForDone();
}

TEST_F(CleansingDialogPreview, AnArchiveThatCannotBeReadIsSaidWithAndWithoutAChoice) {
    AddThree();
    files.FailPath(state.ArchiveDir, QStringLiteral("Permission denied\n"));
    Open();
    WaitUntilCounted();
    EXPECT_EQ(Preview(), "The archive cannot be read: Permission denied");
    Option(0)->click();
    EXPECT_EQ(Preview(), "The archive cannot be read: Permission denied");
    EXPECT_TRUE(Button("btnOK")->isEnabled());
}

TEST_F(CleansingDialogPreview, AfterMidnightTheChoiceMeansOtherDays) {
    Add("a.EML", 0, 1000);
    const QDate today = clock.Now().date();
    clock.Set(QDateTime(today, QTime(23, 59, 59, 700)));
    Open();
    WaitUntilCounted();
    Option(1)->click();
    EXPECT_EQ(Preview(), "Nothing would be removed.");
    clock.Set(QDateTime(today.addDays(1), QTime(0, 0)));
    EXPECT_TRUE(QTest::qWaitFor([this] { return Preview() != "Nothing would be removed."; }, 10'000));
    EXPECT_EQ(Preview(), "One message (1000 bytes) of " + Day(1) + " would be removed.");
}

TEST_F(CleansingDialogPreview, DescribesEachChoiceToAssistiveTools) {
    AddThree();
    Open();
    EXPECT_TRUE(Described(7) == "Counting..." || Described(7).ends_with("removed."));
    WaitUntilCounted();
    EXPECT_EQ(Described(1), "2 messages (5.0 KB) from " + Day(7) + " to " + Day(1) + " would be removed.");
    EXPECT_EQ(Described(7), "One message (3.0 KB) of " + Day(7) + " would be removed.");
    const auto* radio = QAccessible::queryAccessibleInterface(Option(7));
    EXPECT_EQ(radio->text(QAccessible::Description).toStdString(), Described(7));
    Option(7)->click();
    const auto* label = QAccessible::queryAccessibleInterface(Find<QLabel>("lblPreview"));
    EXPECT_EQ(label->text(QAccessible::Name).toStdString(), Preview());
    EXPECT_EQ(label->role(), QAccessible::StaticText);
}

TEST_F(CleansingDialogPreview, IsNeverCutOffAndMovesNothing) {
    Open();
    WaitUntilCounted();
    Option(0)->click();
    const QSize small = dialog->size();
    const QPoint ok = Button("btnOK")->pos();
    for (int number = 0; number < 2000; ++number) {
        Add(qPrintable(QStringLiteral("%1.EML").arg(number)), number % 900, 1'000);
    }
    Open();
    WaitUntilCounted();
    Option(0)->click();
    QApplication::processEvents();
    auto* label = Find<QLabel>("lblPreview");
    EXPECT_TRUE(Preview().starts_with("2"));
    EXPECT_GE(label->height(), label->heightForWidth(label->width()));
    EXPECT_EQ(dialog->size(), small);
    EXPECT_EQ(Button("btnOK")->pos(), ok);
}
