#include "messages/DisposalTask.h"

#include "tests/messages/ListRows.h"
#include "tests/support/CallGate.h"
#include "tests/support/FileNames.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

#include <numeric>

namespace quellbox {

namespace {

const DisposalFolders folders{QStringLiteral("/archive/"), QStringLiteral("/pickup/")};
const QDateTime moment(QDate(2026, 7, 30), QTime(12, 0));

QString Name(int number) {
    return QStringLiteral("%1.EML").arg(number, 4, 10, QLatin1Char('0'));
}

class KeepingDisposal : public testing::Test {
protected:
    KeepingDisposal() {
        files.AddFolder(folders.archive);
        files.AddFolder(folders.pickup);
        QObject::connect(&task, &DisposalTask::Ended, [this](const DisposalResult& ended) { result = ended; });
    }

    void Fill(int count) {
        for (int number = 0; number < count; ++number) {
            model.Append({RowWith(Name(number))});
            files.Add(folders.archive + Name(number), Name(number).toLatin1());
        }
    }

    DisposalResult Run(qint16 action) {
        std::vector<int> rows(static_cast<size_t>(model.Count()));
        std::iota(rows.begin(), rows.end(), 0);
        result = {};
        task.Start(action, folders, rows, kept);
        EXPECT_TRUE(RunUntil([this] { return !task.IsRunning(); }));
        return result;
    }

    MemoryFileSystem files;
    MessageListModel model;
    ThreadWorkPool pool;
    DisposalTask task{files, pool, model};
    DisposalResult result;
    std::shared_ptr<KeptFolder> kept = std::make_shared<KeptFolder>(files, folders.archive, 30, moment);
};

} // namespace

TEST_F(KeepingDisposal, DeletedMessagesGoWholeIntoTheFolderOfTheAction) {
    Fill(3);
    const DisposalResult ended = Run(Action::remove);
    EXPECT_EQ(ended.rowsGone, 3);
    EXPECT_TRUE(ended.failures.empty());
    EXPECT_FALSE(ended.refused.has_value());
    EXPECT_EQ(files.Paths().size(), 3);
    for (int number = 0; number < 3; ++number) {
        EXPECT_EQ(files.Bytes(kept->PathOf(Name(number))), Name(number).toLatin1());
    }
}

TEST_F(KeepingDisposal, EachMessageIsOneCallAndTheFolderTwo) {
    Fill(20);
    const int before = files.CallCount();
    EXPECT_TRUE(Run(Action::remove).failures.empty());
    EXPECT_EQ(files.CallCount() - before, 20 + 2);
}

TEST_F(KeepingDisposal, UnblockingKeepsNothing) {
    Fill(2);
    EXPECT_TRUE(Run(Action::unblock).failures.empty());
    EXPECT_FALSE(kept->IsMade());
    EXPECT_TRUE(files.FileExists(folders.pickup + Name(0)));
}

TEST_F(KeepingDisposal, AReadOnlyFileIsKeptSinceThatCanBeUndone) {
    Fill(1);
    files.SetReadOnly(folders.archive + Name(0));
    EXPECT_TRUE(Run(Action::remove).failures.empty());
    EXPECT_TRUE(files.FileExists(kept->PathOf(Name(0))));
}

TEST_F(KeepingDisposal, AMessageThatIsGoneIsNoFailure) {
    Fill(2);
    files.Remove(folders.archive + Name(1));
    const DisposalResult ended = Run(Action::remove);
    EXPECT_TRUE(ended.failures.empty());
    EXPECT_EQ(ended.rowsGone, 2);
    EXPECT_FALSE(files.FileExists(kept->PathOf(Name(1))));
}

TEST_F(KeepingDisposal, AMessageThatIsGoneWithItsFolderIsAFailure) {
    Fill(2);
    kept->Make();
    files.LoseFolder(kept->Path());
    files.Remove(folders.archive + Name(0));
    files.Remove(folders.archive + Name(1));
    EXPECT_EQ(Run(Action::remove).failures.size(), 2U) << "the share may not be mounted any more";
}

TEST_F(KeepingDisposal, ATakenNameOverwritesNothing) {
    Fill(1);
    kept->Make();
    files.Add(kept->PathOf(Name(0)), "other");
    EXPECT_EQ(Run(Action::remove).failures.size(), 1U);
    EXPECT_EQ(files.Bytes(kept->PathOf(Name(0))), QByteArray("other"));
    EXPECT_EQ(files.Bytes(folders.archive + Name(0)), Name(0).toLatin1());
}

TEST_F(KeepingDisposal, WithoutTheFolderNothingIsDeletedAndTheRowsStay) {
    Fill(40);
    files.FailPath(KeptFoldersOf(folders.archive), QStringLiteral("no right"));
    int progress = 0;
    QObject::connect(&task, &DisposalTask::Progress, [&progress](int) { ++progress; });
    const int before = files.CallCount();
    const DisposalResult ended = Run(Action::remove);
    ASSERT_TRUE(ended.refused.has_value());
    EXPECT_EQ(ended.refused->reason, QStringLiteral("no right"));
    EXPECT_EQ(ended.rowsGone, 0);
    EXPECT_EQ(ended.nextRow, -1);
    EXPECT_TRUE(ended.failures.empty());
    EXPECT_EQ(model.Count(), 40);
    EXPECT_EQ(files.Paths().size(), 40);
    EXPECT_EQ(progress, 0);
    EXPECT_EQ(files.CallCount() - before, 1) << "the server is asked once";
}

// Whatever fails, each message is in exactly one of the two folders, or nothing was touched.
TEST_F(KeepingDisposal, AFailingCallLosesNothing) {
    for (int failing = 1; failing <= 7; ++failing) {
        MemoryFileSystem fresh;
        MessageListModel list;
        fresh.AddFolder(folders.archive);
        for (int number = 0; number < 4; ++number) {
            list.Append({RowWith(Name(number))});
            fresh.Add(folders.archive + Name(number), Name(number).toLatin1());
        }
        const auto folder = std::make_shared<KeptFolder>(fresh, folders.archive, 30, moment);
        DisposalTask disposal(fresh, pool, list);
        DisposalResult ended;
        QObject::connect(&disposal, &DisposalTask::Ended, [&ended](const DisposalResult& told) { ended = told; });
        fresh.FailCall(failing);
        disposal.Start(Action::remove, folders, {0, 1, 2, 3}, folder);
        EXPECT_TRUE(RunUntil([&disposal] { return !disposal.IsRunning(); }));
        EXPECT_EQ(ended.refused.has_value(), failing <= 2);
        EXPECT_EQ(ended.failures.size(), failing > 2 && failing <= 6 ? 1U : 0U);
        EXPECT_EQ(list.Count(), failing <= 2 ? 4 : 0);
        EXPECT_EQ(fresh.Paths().size(), 4);
        for (int number = 0; number < 4; ++number) {
            const bool inArchive = fresh.FileExists(folders.archive + Name(number));
            EXPECT_NE(inArchive, fresh.FileExists(folder->PathOf(Name(number))));
        }
    }
}

TEST_F(KeepingDisposal, GivenUpWhileTheFolderIsMadeItDeletesNothing) {
    Fill(3);
    CallGate gate;
    files.SetChangeHook([&](const QString& path) {
        if (path == KeptFoldersOf(folders.archive).Text()) {
            gate.Pass(0);
        }
    });
    task.Start(Action::remove, folders, {0, 1, 2}, kept);
    ASSERT_TRUE(gate.WaitForInside(1));
    task.GiveUp();
    EXPECT_FALSE(task.IsRunning());
    EXPECT_EQ(model.Count(), 3);
    EXPECT_FALSE(result.refused.has_value());
    gate.LetAll();
    pool.WaitForDone();
}

} // namespace quellbox
