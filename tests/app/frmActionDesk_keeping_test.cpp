#include "messages/KeptFolder.h"
#include "tests/support/FileNames.h"
#include "tests/support/MainWindowFixture.h"

#include <QDialog>
#include <QRadioButton>

namespace quellbox {

namespace {

const QString archive = QStringLiteral("/archive/");
const QString above = QStringLiteral("/archive/.quellbox-deleted");

class KeepingActions : public MainWindowTest {
protected:
    void Keep(const char* days) { Set("KeepDeletedDays", days); }

    /// What is kept, as "a.eml b.eml", in the only folder of an action.
    std::string Kept() const {
        const QStringList folders = FolderNamesIn(above);
        EXPECT_EQ(folders.size(), 1);
        if (folders.isEmpty()) {
            return {};
        }
        EXPECT_TRUE(ParseKeptFolderName(folders.front()).has_value()) << folders.front().toStdString();
        return FileNames(files_, above + QLatin1Char('/') + folders.front()).join(QLatin1Char(' ')).toStdString();
    }

    QStringList FolderNamesIn(const QString& folder) const {
        QStringList names;
        for (const FolderEntry& entry : files_.Entries(folder)) {
            if (entry.kind == EntryKind::Folder) {
                names += entry.name;
            }
        }
        return names;
    }

    void Cleanse(int days) {
        QTimer::singleShot(0, window_.get(), [days] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            dialog->findChild<QRadioButton*>(QStringLiteral("optDays%1").arg(days))->click();
            dialog->findChild<QAbstractButton*>(QStringLiteral("btnOK"))->click();
        });
        Action("mnuToolsCleansing")->trigger();
        Settle();
    }
};

} // namespace

TEST_F(KeepingActions, WithoutTheSettingDeletedMessagesAreGoneAndNoFolderIsMade) {
    AddThree();
    OpenRefreshed();
    ClickRow(0);
    Action("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_EQ(files_.Paths().size(), 2);
    EXPECT_FALSE(files_.FolderExists(above));
    Cleanse(0);
    EXPECT_TRUE(files_.Paths().isEmpty());
    EXPECT_FALSE(files_.FolderExists(above));
}

TEST_F(KeepingActions, DeletedMessagesAreKeptForTheDaysOfTheSetting) {
    Keep("30");
    AddThree();
    OpenRefreshed();
    ClickRow(0);
    ClickRow(1, Qt::ControlModifier);
    Action("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_EQ(window_->Messages().Count(), 1);
    EXPECT_EQ(Kept().size(), std::string("a.eml b.eml").size());
    const std::optional<KeptFolderName> name = ParseKeptFolderName(FolderNamesIn(above).value(0));
    ASSERT_TRUE(name.has_value());
    EXPECT_EQ(name->days, 30);
    EXPECT_EQ(name->made, clock_.Now());
    EXPECT_TRUE(errors_.isEmpty());
    window_->mnuAcRefresh_Click();
    Settle();
    EXPECT_EQ(window_->Messages().Count(), 1) << "what is kept is not listed";
}

TEST_F(KeepingActions, UnblockingKeepsNothing) {
    Keep("30");
    AddThree();
    OpenRefreshed();
    ClickRow(0);
    Action("mnuActionsUnblock")->trigger();
    Settle();
    EXPECT_FALSE(files_.FolderExists(above));
}

TEST_F(KeepingActions, WhereNothingCanBeKeptNothingIsDeletedAndTheUserIsTold) {
    Keep("30");
    AddThree();
    files_.FailPath(above, QStringLiteral("no right"));
    OpenRefreshed();
    ClickRow(1);
    const std::string before = Keys();
    const std::string selected = SelectedKeys();
    Action("mnuActionsDelete")->trigger();
    Settle();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !errors_.isEmpty(); }, patience));
    EXPECT_EQ(errors_, QStringList{QStringLiteral("Nothing was deleted: the folder for deleted messages cannot be made "
                                                  "in /archive/\n\nno right")});
    EXPECT_EQ(Keys(), before);
    EXPECT_EQ(SelectedKeys(), selected);
    EXPECT_EQ(files_.Paths().size(), 3);
    EXPECT_TRUE(Action("mnuActionsDelete")->isEnabled());
}

TEST_F(KeepingActions, TheCleansingKeepsToo) {
    Keep("5");
    AddThree();
    OpenRefreshed();
    Cleanse(0);
    EXPECT_EQ(window_->Messages().Count(), 0);
    EXPECT_EQ(Kept().size(), std::string("a.eml b.eml c.eml").size());
    EXPECT_EQ(window_->Panels().Info().text, QStringLiteral("3 Messages removed !"));
}

TEST_F(KeepingActions, ACleansingThatCannotKeepDeletesNothingAndTellsTheUser) {
    Keep("5");
    AddThree();
    files_.FailPath(above, QStringLiteral("no right"));
    OpenRefreshed();
    Cleanse(0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !errors_.isEmpty(); }, patience));
    Settle();
    EXPECT_EQ(errors_.size(), 1);
    EXPECT_TRUE(errors_.value(0).startsWith(QStringLiteral("Nothing was deleted")));
    EXPECT_EQ(files_.Paths().size(), 3);
    EXPECT_EQ(window_->Messages().Count(), 3);
    EXPECT_EQ(window_->Panels().Info().text, QStringLiteral("0 Messages removed !"));
}

} // namespace quellbox
