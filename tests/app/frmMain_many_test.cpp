#include "tests/support/RealFolderWindow.h"

#include <QHash>

using namespace quellbox;

namespace {

using Contents = QHash<QString, QByteArray>;

class Many : public RealFolderWindowTest {
protected:
    /// Adds the files of a folder, and fails where a name comes twice: a message must never be in both folders.
    static void AddFiles(Contents& contents, const QString& folder) {
        for (const QString& name : QDir(folder).entryList(QDir::Files | QDir::Hidden)) {
            EXPECT_FALSE(contents.contains(name)) << name.toStdString();
            contents.insert(name, Read(folder + name));
        }
    }

    Contents AllFiles() const {
        Contents contents;
        AddFiles(contents, Archive());
        AddFiles(contents, Pickup());
        return contents;
    }

    /// Notes what the count panel says, each text once.
    void WatchCount() {
        QObject::connect(&window->Panels(), &StatusPanels::Changed, window.get(), [this] {
            const QString text = window->Panels().Count().text;
            if (counts.isEmpty() || counts.last() != text) {
                counts.append(text);
            }
        });
    }

    /// The progress texts from `first` down to `last`.
    static QStringList Hundreds(int first, int last) {
        QStringList texts;
        for (int left = first; left >= last; left -= 100) {
            texts.append(QString::number(left));
        }
        return texts;
    }

    QStringList NumbersShown() const {
        QStringList numbers;
        for (const QString& text : counts) {
            bool isNumber = false;
            [[maybe_unused]] const int number = text.toInt(&isNumber);
            if (isNumber) {
                numbers.append(text);
            }
        }
        return numbers;
    }

    QStringList counts;
};

TEST_F(Many, EverySecondOfTwoThousandLeavesTheOthers) {
    constexpr int count = 2000;
    Open(count);
    ASSERT_EQ(window->Messages().Count(), count);
    const Contents before = AllFiles();
    const QStringList listed = Keys();
    QStringList moved;
    QStringList kept;
    QItemSelection selection;
    for (int row = 0; row < count; ++row) {
        const bool isSelected = row % 2 == 1;
        (isSelected ? moved : kept).append(listed[row]);
        if (isSelected) {
            selection.select(window->Messages().index(row, 0), window->Messages().index(row, ColumnSubject));
        }
    }
    // The commands go by the current row, as after a click.
    List()->selectionModel()->setCurrentIndex(window->Messages().index(1, 0), QItemSelectionModel::NoUpdate);
    List()->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    window->UpdateSelectionStatus();
    WatchCount();
    Command("mnuActionsUnblock")->trigger();
    EXPECT_TRUE(AllFiles() == before);
    EXPECT_TRUE(Keys() == kept);
    kept.sort();
    moved.sort();
    EXPECT_TRUE(QDir(Archive()).entryList(QDir::Files, QDir::Name) == kept);
    EXPECT_TRUE(QDir(Pickup()).entryList(QDir::Files, QDir::Name) == moved);
    EXPECT_EQ(window->Panels().Count().text, QStringLiteral("1000 messages"));
    EXPECT_EQ(NumbersShown(), Hundreds(1900, 1000));
}

} // namespace

TEST_F(Many, TenThousandAreUnblockedAndNoByteIsLost) {
    constexpr int count = 10000;
    Open(count);
    ASSERT_EQ(window->Messages().Count(), count);
    const Contents before = AllFiles();
    ASSERT_EQ(before.size(), count);
    List()->selectAll();
    window->UpdateSelectionStatus();
    ASSERT_TRUE(Command("mnuActionsUnblock")->isEnabled());
    WatchCount();
    Command("mnuActionsUnblock")->trigger();
    // == on a hash of 10,000 messages would print all of them.
    EXPECT_TRUE(AllFiles() == before);
    EXPECT_TRUE(QDir(Archive()).isEmpty());
    EXPECT_EQ(QDir(Pickup()).entryList(QDir::Files).size(), count);
    EXPECT_EQ(window->Messages().Count(), 0);
    EXPECT_EQ(window->Panels().Count().text, QStringLiteral("0 messages"));
    EXPECT_EQ(NumbersShown(), Hundreds(count - 100, 0));
}
