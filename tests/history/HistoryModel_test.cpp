#include "history/HistoryModel.h"

#include "tests/history/JournalFile.h"

using namespace quellbox;

namespace {

class HistoryModelTest : public JournalTest {
protected:
    HistoryModelTest() { Open(); }

    void Fill(int count) {
        QStringList names;
        for (int number = 0; number < count; ++number) {
            names.append(QStringLiteral("%1.eml").arg(number, 5, 10, QLatin1Char('0')));
        }
        Act(HistoryAction::Delete, names);
    }

    static bool HasCome(const HistoryModel& model, int row) {
        return RunUntil([&model, row] { return model.Line(row) != nullptr; });
    }
};

TEST_F(HistoryModelTest, FetchesOnlyTheLinesThatAreAskedFor) {
    Fill(1000);
    HistoryModel model(*journal_);
    std::vector<int> fetched;
    QObject::connect(&model, &HistoryModel::Fetched, [&fetched](int first, int last) {
        fetched.push_back(first);
        fetched.push_back(last);
    });
    model.SetFilter({});
    EXPECT_TRUE(RunUntil([&model] { return !model.IsAsking(); }));
    EXPECT_EQ(model.rowCount(), 1000);
    EXPECT_EQ(model.Line(0), nullptr);
    ASSERT_TRUE(HasCome(model, 0));
    EXPECT_EQ(model.Line(0)->entry.file, QStringLiteral("00999.eml"));
    ASSERT_TRUE(HasCome(model, 999));
    EXPECT_EQ(model.Line(999)->entry.file, QStringLiteral("00000.eml"));
    EXPECT_EQ(fetched, std::vector<int>({0, 199, 800, 999}));
}

TEST_F(HistoryModelTest, GivesOnlyWhatTheLatestFilterLetsThrough) {
    Fill(300);
    HistoryModel model(*journal_);
    model.SetFilter({});
    model.SetFilter({QStringLiteral("nothing like this"), {}, {}});
    model.SetFilter({QStringLiteral("0029"), {}, {}}); // 00029 and 00290 to 00299
    EXPECT_TRUE(RunUntil([&model] { return !model.IsAsking(); }));
    EXPECT_EQ(model.rowCount(), 11);
    ASSERT_TRUE(HasCome(model, 10));
    EXPECT_EQ(model.Line(10)->entry.file, QStringLiteral("00029.eml"));
}

TEST_F(HistoryModelTest, PutsWhatIsDoneNowAboveTheRest) {
    Fill(3);
    HistoryModel model(*journal_);
    model.SetFilter({});
    EXPECT_TRUE(RunUntil([&model] { return model.rowCount() == 3; }));
    const QPersistentModelIndex oldest(model.index(2, 0));
    int resets = 0;
    QObject::connect(&model, &QAbstractItemModel::modelReset, [&resets] { ++resets; });
    Act(HistoryAction::Unblock, {QStringLiteral("new")});
    EXPECT_TRUE(RunUntil([&model] { return model.rowCount() == 4; }));
    EXPECT_EQ(resets, 0);
    EXPECT_EQ(oldest.row(), 3);
    ASSERT_TRUE(HasCome(model, 0));
    EXPECT_EQ(model.Line(0)->entry.file, QStringLiteral("new"));
}

TEST_F(HistoryModelTest, ShowsAnEmptyCellUntilTheLineHasCome) {
    Fill(1);
    HistoryModel model(*journal_);
    model.SetFilter({});
    EXPECT_TRUE(RunUntil([&model] { return model.rowCount() == 1; }));
    const QModelIndex cell = model.index(0, HistoryActionName);
    EXPECT_EQ(cell.data(), QVariant());
    EXPECT_TRUE(RunUntil([&cell] { return cell.data().toString() == QStringLiteral("Delete"); }));
}

TEST_F(HistoryModelTest, MayGoWhileItAsks) {
    Fill(500);
    {
        HistoryModel model(*journal_);
        model.SetFilter({});
    }
    {
        HistoryModel model(*journal_);
        model.SetFilter({});
        EXPECT_TRUE(RunUntil([&model] { return model.rowCount() == 500; }));
        model.Line(300);
    }
    EXPECT_EQ(Files().size(), 500);
}

} // namespace
