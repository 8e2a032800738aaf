#include "messages/DisposalTask.h"

#include "tests/messages/ListRows.h"
#include "tests/support/CallGate.h"
#include "tests/support/Gzip.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

const DisposalFolders folders{QStringLiteral("/archive/"), QStringLiteral("/pickup/")};

QString Name(int number) {
    return QStringLiteral("%1.EML").arg(number, 4, 10, QLatin1Char('0'));
}

/// Disposes of rows from start to end.
DisposalResult Dispose(
    FileSystem& files, qint16 action, const std::vector<int>& rows, MessageListModel& model,
    const std::function<void(int)>& rowsLeft = [](int) {}, Packing packing = Packing::Never) {
    ThreadWorkPool pool;
    DisposalTask task(files, pool, model);
    DisposalResult result;
    QObject::connect(&task, &DisposalTask::RowsLeft, rowsLeft);
    QObject::connect(&task, &DisposalTask::Ended, [&result](const DisposalResult& ended) { result = ended; });
    task.Start(action, {folders.archive, folders.pickup, nullptr, packing}, rows);
    EXPECT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
    return result;
}

class Disposal : public testing::Test {
protected:
    void Fill(int count) {
        files.AddFolder(folders.pickup);
        std::vector<MessageRow> rows;
        for (int number = 0; number < count; ++number) {
            rows.push_back(RowWith(Name(number)));
            files.Add(folders.archive + Name(number), QByteArray("Subject: ") + QByteArray::number(number));
        }
        model.Append(std::move(rows));
    }

    DisposalResult Run(qint16 action, const std::vector<int>& rows, Packing packing = Packing::Never) {
        return Dispose(
            files, action, rows, model, [this](int left) { progress.push_back(left); }, packing);
    }

    QStringList Keys() const {
        QStringList keys;
        for (int row = 0; row < model.Count(); ++row) {
            keys.append(model.Row(row).Key());
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

TEST_F(Disposal, TakesTheRightRowsOfANarrowedListAwayWhenAnotherOneMatchesMeanwhile) {
    Fill(5);
    model.Replace(RowWith(QStringLiteral("other"), Name(0)));
    model.Narrow(QStringLiteral(".eml"));
    ThreadWorkPool pool;
    DisposalTask task(files, pool, model);
    DisposalResult result;
    QObject::connect(&task, &DisposalTask::Ended, [&result](const DisposalResult& ended) { result = ended; });
    task.Start(Action::remove, folders, {1, 2});
    model.Replace(RowWith(Name(0))); // in front of them
    EXPECT_TRUE(RunUntil([&task] { return !task.IsRunning(); }));
    EXPECT_EQ(Keys(), QStringList({Name(1), Name(4)}));
    EXPECT_EQ(result.nextKey, Name(4));
    EXPECT_EQ(files.Paths(),
              QStringList({folders.archive + Name(0), folders.archive + Name(1), folders.archive + Name(4)}));
}

TEST_F(Disposal, DoesNotUnblockWhatIsPackedAndSaysSo) {
    for (const qint16 action : {Action::unblock, Action::unblockTolerated}) {
        Fill(3);
        files.Add(folders.archive + Name(1), Gzip("Subject: packed"));
        const DisposalResult result = Run(action, {0, 1, 2}, Packing::Possible);
        EXPECT_EQ(result.rowsGone, 3);
        ASSERT_EQ(result.failures.size(), 1U);
        EXPECT_EQ(result.failures[0].problem, FileProblem::Packed);
        EXPECT_EQ(result.failures[0].path, folders.archive + Name(1));
        EXPECT_EQ(files.Paths(),
                  QStringList({folders.archive + Name(1), folders.pickup + Name(0), folders.pickup + Name(2)}));
        files.Remove(folders.pickup + Name(0));
        files.Remove(folders.pickup + Name(2));
    }
}

TEST_F(Disposal, DeletesAndOtherwiseMovesWhateverItIs) {
    Fill(2);
    files.Add(folders.archive + Name(0), Gzip("Subject: packed"));
    files.Add(folders.archive + Name(1), Gzip("Subject: packed"));
    const int opened = files.OpenCount();
    EXPECT_TRUE(Run(Action::remove, {0}, Packing::Possible).failures.empty());
    EXPECT_TRUE(Run(Action::unblock, {0}).failures.empty()) << "the server packs nothing";
    EXPECT_EQ(files.OpenCount(), opened);
    EXPECT_EQ(files.Paths(), QStringList({folders.pickup + Name(1)}));
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
            list.Append({RowWith(Name(number))});
            fresh.Add(folders.archive + Name(number), Name(number).toLatin1());
        }
        fresh.Add(folders.pickup + Name(1), "other");
        fresh.Remove(folders.archive + Name(2));
        fresh.SetReadOnly(folders.archive + Name(3));
        QStringList outcome;
        const DisposalResult result = Dispose(fresh, action, {0, 1, 2, 3}, list);
        outcome << QString::number(result.rowsGone) << QString::number(result.nextRow) << list.Row(0).Key();
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

TEST_F(Disposal, EachMessageIsOneCallOfTheFileSystem) {
    for (const qint16 action : {Action::unblock, Action::remove}) {
        Fill(3);
        const int before = files.CallCount();
        EXPECT_TRUE(Run(action, {0, 1, 2}).failures.empty());
        EXPECT_EQ(files.CallCount() - before, 3);
    }
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
        for (int failing = 1; failing <= 5; ++failing) {
            MemoryFileSystem fresh;
            fresh.AddFolder(folders.pickup);
            MessageListModel list;
            for (int number = 0; number < 4; ++number) {
                list.Append({RowWith(Name(number))});
                fresh.Add(folders.archive + Name(number), Name(number).toLatin1());
            }
            fresh.FailCall(failing);
            const DisposalResult result = Dispose(fresh, action, {0, 1, 2, 3}, list);
            EXPECT_EQ(list.Count(), 0);
            QStringList names;
            for (const QString& path : fresh.Paths()) {
                names.append(path.section(QLatin1Char('/'), -1));
                EXPECT_EQ(fresh.Bytes(path), names.back().toLatin1());
            }
            EXPECT_EQ(names.removeDuplicates(), 0);
            EXPECT_EQ(result.failures.size(), failing <= 4 ? 1U : 0U);
            if (action == Action::unblock) {
                EXPECT_EQ(names.size(), 4);
            } else {
                EXPECT_EQ(names.size(), failing <= 4 ? 1 : 0);
                EXPECT_TRUE(names.isEmpty() || fresh.FileExists(folders.archive + names.front()));
            }
        }
    }
}

namespace {

/// Calls of the file system end when the test lets them: those of row n are call n of the gate.
class SlowDisposal : public Disposal {
protected:
    class Gated : public MemoryFileSystem {
    public:
        void Move(const QString& from, const QString& to) override {
            gate.Pass(static_cast<size_t>(from.section(QLatin1Char('/'), -1).left(4).toInt()));
            MemoryFileSystem::Move(from, to);
        }

        CallGate gate;
    };

    SlowDisposal() {
        slow.AddFolder(folders.pickup);
        Fill(6);
        for (int number = 0; number < 6; ++number) {
            slow.Add(folders.archive + Name(number), "x");
        }
        pool.SetMost(2);
        QObject::connect(&task, &DisposalTask::Ended, [this](const DisposalResult& ended) { result = ended; });
    }

    ~SlowDisposal() override {
        slow.gate.LetAll();
        pool.WaitForDone();
    }

    bool HasEnded() const { return !task.IsRunning(); }

    Gated slow;
    ThreadWorkPool pool;
    DisposalTask task{slow, pool, model};
    DisposalResult result;
};

} // namespace

TEST_F(SlowDisposal, CancelledItKeepsTheRowsThatHaveNotBegun) {
    task.Start(Action::unblock, folders, {0, 1, 2, 4});
    ASSERT_TRUE(slow.gate.WaitForInside(2));
    task.Cancel();
    QCoreApplication::processEvents();
    EXPECT_TRUE(task.IsCancelled());
    EXPECT_EQ(model.Count(), 6) << "two moves are under way";
    slow.gate.LetAll();
    ASSERT_TRUE(RunUntil([this] { return HasEnded(); }));
    EXPECT_EQ(result.rowsGone, 2);
    EXPECT_EQ(result.nextRow, 0);
    EXPECT_EQ(Keys(), (QStringList{Name(2), Name(3), Name(4), Name(5)}));
    EXPECT_TRUE(slow.FileExists(folders.pickup + Name(1)));
    EXPECT_TRUE(slow.FileExists(folders.archive + Name(2)));
}

TEST_F(SlowDisposal, GivenUpItEndsWithoutThoseThatAreUnderWay) {
    int done = 0;
    QObject::connect(&task, &DisposalTask::Progress, [&done](int count) { done = count; });
    task.Start(Action::unblock, folders, {0, 1, 2});
    ASSERT_TRUE(slow.gate.WaitForInside(2));
    slow.gate.Let(0);
    ASSERT_TRUE(RunUntil([&done] { return done == 1; }));
    ASSERT_TRUE(slow.gate.WaitForInside(2)) << "the third one has begun";
    task.GiveUp();
    EXPECT_TRUE(HasEnded());
    EXPECT_EQ(result.rowsGone, 1);
    EXPECT_EQ(Keys().size(), 5);
    slow.gate.LetAll();
    pool.WaitForDone();
    EXPECT_TRUE(slow.FileExists(folders.pickup + Name(1))) << "what is under way is not torn apart";
}

TEST_F(SlowDisposal, OneCallThatHangsHoldsUpNoOther) {
    pool.SetMost(64);
    task.Start(Action::unblock, folders, {0, 1, 2, 3, 4, 5});
    ASSERT_TRUE(slow.gate.WaitForInside(1));
    for (const size_t call : {1U, 2U, 3U, 4U, 5U}) {
        slow.gate.Let(call);
    }
    EXPECT_TRUE(RunUntil([this] { return slow.FileExists(folders.pickup + Name(5)); }));
    EXPECT_FALSE(HasEnded());
    EXPECT_EQ(model.Count(), 6);
    slow.gate.Let(0);
    ASSERT_TRUE(RunUntil([this] { return HasEnded(); }));
    EXPECT_EQ(model.Count(), 0);
}
