#include "messages/Disposal.h"

#include "tests/support/MemoryFileSystem.h"

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

const DisposalFolders folders{QStringLiteral("/archive/"), QStringLiteral("/pickup/")};

QString Name(int number) {
    return QStringLiteral("%1.EML").arg(number, 4, 10, QLatin1Char('0'));
}

class Disposal : public testing::Test {
protected:
    void Fill(int count) {
        files.AddFolder(folders.pickup);
        std::vector<MessageRow> rows;
        for (int number = 0; number < count; ++number) {
            MessageRow row;
            row.key = Name(number);
            rows.push_back(row);
            files.Add(folders.archive + row.key, QByteArray("Subject: ") + QByteArray::number(number));
        }
        model.Append(std::move(rows));
    }

    DisposalResult Run(qint16 action, const std::vector<int>& rows) {
        return DisposeOfMessages(files, action, folders, rows, model, [this](int left) { progress.push_back(left); });
    }

    QStringList Keys() const {
        QStringList keys;
        for (int row = 0; row < model.Count(); ++row) {
            keys.append(model.Row(row).key);
        }
        return keys;
    }

    MemoryFileSystem files;
    MessageListModel model;
    std::vector<int> progress;
};

} // namespace

TEST_F(Disposal, DeletesTheFilesAndTheRows) {
    Fill(4);
    const DisposalResult result = Run(Action::remove, {0, 2});
    EXPECT_EQ(result.rowsGone, 2);
    EXPECT_EQ(result.nextRow, 1);
    EXPECT_TRUE(result.failures.empty());
    EXPECT_EQ(Keys(), QStringList({Name(1), Name(3)}));
    EXPECT_EQ(files.Paths(), QStringList({folders.archive + Name(1), folders.archive + Name(3)}));
}

TEST_F(Disposal, MovesIntoThePickupFolderWithEitherUnblockCode) {
    for (const qint16 action : {Action::unblock, Action::unblockTolerated}) {
        Fill(1);
        const DisposalResult result = Run(action, {0});
        EXPECT_TRUE(result.failures.empty());
        EXPECT_EQ(result.nextRow, -1);
        EXPECT_EQ(files.Paths(), QStringList({folders.pickup + Name(0)}));
        files.Remove(folders.pickup + Name(0));
    }
}

// One message can be moved, the name of another is taken, the third has gone and the fourth is read-only.
TEST_F(Disposal, BothUnblockCodesDoTheSameWhateverHappens) {
    std::vector<QString> outcomes;
    for (const qint16 action : {Action::unblock, Action::unblockTolerated}) {
        MemoryFileSystem fresh;
        MessageListModel list;
        fresh.AddFolder(folders.pickup);
        for (int number = 0; number < 5; ++number) {
            MessageRow row;
            row.key = Name(number);
            list.Append({row});
            fresh.Add(folders.archive + Name(number), Name(number).toLatin1());
        }
        fresh.Add(folders.pickup + Name(1), "other");
        fresh.Remove(folders.archive + Name(2));
        fresh.SetReadOnly(folders.archive + Name(3));
        QStringList outcome;
        const DisposalResult result = DisposeOfMessages(fresh, action, folders, {0, 1, 2, 3}, list, [](int) {});
        outcome << QString::number(result.rowsGone) << QString::number(result.nextRow) << list.Row(0).key;
        for (const auto& failure : result.failures) {
            outcome << failure.path + QLatin1Char('=') + failure.reason;
        }
        for (const QString& path : fresh.Paths()) {
            outcome << path + QLatin1Char('=') + QString::fromLatin1(fresh.Bytes(path));
        }
        EXPECT_EQ(result.rowsGone, 4);
        EXPECT_EQ(list.Count(), 1);
        EXPECT_TRUE(fresh.FileExists(folders.pickup + Name(0)));
        outcomes.push_back(outcome.join(QLatin1Char('\n')));
    }
    EXPECT_EQ(outcomes[0].toStdString(), outcomes[1].toStdString());
}

TEST_F(Disposal, SelectsTheRowThatFollowedOrTheLastOne) {
    Fill(5);
    EXPECT_EQ(Run(Action::remove, {1}).nextRow, 1);
    EXPECT_EQ(Keys().at(1), Name(2));
    EXPECT_EQ(Run(Action::remove, {3}).nextRow, 2);
    EXPECT_EQ(Run(Action::remove, {0, 1, 2}).nextRow, -1);
}

TEST_F(Disposal, AnyOtherCodeAndAnEmptySelectionChangeNothing) {
    Fill(2);
    for (const qint16 action : {qint16(0), qint16(4), qint16(-1)}) {
        EXPECT_EQ(Run(action, {0}).rowsGone, 0);
    }
    EXPECT_EQ(Run(Action::remove, {}).rowsGone, 0);
    EXPECT_EQ(model.Count(), 2);
    EXPECT_EQ(files.Paths().size(), 2);
}

TEST_F(Disposal, ANameThatExistsInPickupKeepsBothFilesButTheRowGoes) {
    Fill(1);
    files.Add(folders.pickup + Name(0), "other");
    const DisposalResult result = Run(Action::unblock, {0});
    ASSERT_EQ(result.failures.size(), 1U);
    EXPECT_EQ(result.failures.front().path, folders.pickup + Name(0));
    EXPECT_FALSE(result.failures.front().reason.isEmpty());
    EXPECT_EQ(model.Count(), 0);
    EXPECT_EQ(files.Bytes(folders.archive + Name(0)), QByteArray("Subject: 0"));
    EXPECT_EQ(files.Bytes(folders.pickup + Name(0)), QByteArray("other"));
}

TEST_F(Disposal, DeletingAMissingFileIsNoFailureMovingItIs) {
    Fill(2);
    files.Remove(folders.archive + Name(0));
    files.Remove(folders.archive + Name(1));
    EXPECT_TRUE(Run(Action::remove, {0}).failures.empty());
    EXPECT_EQ(Run(Action::unblock, {0}).failures.size(), 1U);
    EXPECT_EQ(model.Count(), 0);
}

TEST_F(Disposal, AReadOnlyFileStaysAndItsRowGoes) {
    Fill(1);
    files.SetReadOnly(folders.archive + Name(0));
    EXPECT_EQ(Run(Action::remove, {0}).failures.size(), 1U);
    EXPECT_EQ(model.Count(), 0);
    EXPECT_EQ(files.Paths().size(), 1);
}

TEST_F(Disposal, TellsEveryHundredRowsLeft) {
    Fill(250);
    std::vector<int> all(250);
    for (int row = 0; row < 250; ++row) {
        all[static_cast<size_t>(row)] = row;
    }
    EXPECT_EQ(Run(Action::remove, all).rowsGone, 250);
    EXPECT_EQ(progress, std::vector<int>({200, 100, 0}));
}

TEST_F(Disposal, RowsGoInOneRemovalPerRange) {
    Fill(100);
    int removals = 0;
    QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &model, [&removals] { ++removals; });
    EXPECT_EQ(Run(Action::remove, {10, 11, 12, 13}).rowsGone, 4);
    EXPECT_EQ(removals, 1);
}

// Whatever fails, no message is lost, halved or doubled.
TEST_F(Disposal, AFailingCallLeavesEveryMessageWholeInExactlyOneFolder) {
    for (const qint16 action : {Action::unblock, Action::remove}) {
        for (int failing = 1; failing <= 8; ++failing) {
            MemoryFileSystem fresh;
            fresh.AddFolder(folders.pickup);
            MessageListModel list;
            for (int number = 0; number < 4; ++number) {
                MessageRow row;
                row.key = Name(number);
                list.Append({row});
                fresh.Add(folders.archive + Name(number), Name(number).toLatin1());
            }
            fresh.FailCall(failing);
            const DisposalResult result = DisposeOfMessages(fresh, action, folders, {0, 1, 2, 3}, list, [](int) {});
            EXPECT_EQ(list.Count(), 0);
            QStringList names;
            for (const QString& path : fresh.Paths()) {
                names.append(path.section(QLatin1Char('/'), -1));
                EXPECT_EQ(fresh.Bytes(path), names.back().toLatin1());
            }
            EXPECT_EQ(names.removeDuplicates(), 0);
            if (action == Action::unblock) {
                EXPECT_EQ(names.size(), 4);
                EXPECT_EQ(result.failures.size(), failing <= 4 ? 1U : 0U);
            } else {
                EXPECT_EQ(names.size(), 1);
                EXPECT_TRUE(fresh.FileExists(folders.archive + names.front()));
            }
        }
    }
}
