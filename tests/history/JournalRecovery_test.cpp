#include "history/JournalRecovery.h"

#include "tests/history/JournalFile.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/NativePath.h"

using namespace quellbox;

namespace {

const QString theFile = QStringLiteral("a.eml");

struct Case {
    const char* name;
    HistoryAction action;
    bool keeps;
    bool isInArchive;
    bool isInOther;
    HistoryResult result;
    bool isWritten = true;
};

class Outcome : public testing::TestWithParam<Case> {};

TEST_P(Outcome, FollowsFromWhereTheMessageIs) {
    const Case& what = GetParam();
    InterruptedAction action;
    action.facts.action = what.action;
    action.facts.archive = theArchive;
    action.facts.kept = what.keeps ? QStringLiteral("/archive/.kept/1/") : QString();
    FoundFiles found;
    if (what.isInArchive) {
        found.archive.insert(theFile);
    }
    if (what.isInOther) {
        found.other.insert(theFile);
    }
    const std::optional<HistoryEntry> entry = OutcomeOf(action, theFile, found);
    ASSERT_EQ(entry.has_value(), what.isWritten);
    if (entry) {
        EXPECT_EQ(entry->file, theFile);
        EXPECT_EQ(entry->result, what.result);
        EXPECT_EQ(entry->reason.isEmpty(), what.result == HistoryResult::Done);
    }
}

constexpr auto done = HistoryResult::Done;
constexpr auto failed = HistoryResult::Failed;

INSTANTIATE_TEST_SUITE_P(
    Each, Outcome,
    testing::Values(Case{"Unblocked", HistoryAction::Unblock, false, false, true, done},
                    Case{"UnblockedAndDelivered", HistoryAction::Unblock, false, false, false, done},
                    Case{"NotUnblocked", HistoryAction::Unblock, false, true, false, failed},
                    Case{"UnblockedHalf", HistoryAction::Unblock, false, true, true, failed},
                    Case{"Tolerated", HistoryAction::AutoTolerate, false, false, true, done},
                    Case{"DeletedForGood", HistoryAction::Delete, false, false, false, done},
                    Case{"NotDeleted", HistoryAction::Delete, false, true, false, failed},
                    Case{"Kept", HistoryAction::Delete, true, false, true, done},
                    Case{"NotKept", HistoryAction::Delete, true, true, false, failed},
                    Case{"LeftByACleansing", HistoryAction::Cleanse, true, true, false, failed, false},
                    Case{"KeptAndGone", HistoryAction::Cleanse, true, false, false, failed},
                    Case{"PutBack", HistoryAction::Undo, true, true, false, done},
                    Case{"NotPutBack", HistoryAction::Undo, true, false, true, failed},
                    Case{"PutBackHalf", HistoryAction::Undo, false, true, true, failed}),
    [](const auto& what) { return what.param.name; });

class RecoveryTest : public JournalTest {
protected:
    RecoveryTest() {
        files_.AddFolder(theArchive);
        files_.AddFolder(thePickup);
    }

    /// A program announces two files, writes nothing of what becomes of them, and ends.
    void Interrupt(const HistorySubject& subject) {
        Open();
        const auto record = journal_->Begin(subject);
        record->Announce({QStringLiteral("a"), QStringLiteral("b")});
        record->AwaitAnnounced();
        Close(); // what is told from now on is not written any more
    }

    int Recover() {
        Open();
        JournalRecovery recovery(files_, *pool_, *journal_);
        std::optional<int> completed;
        QObject::connect(&recovery, &JournalRecovery::Ended, [&completed](int actions) { completed = actions; });
        recovery.Start();
        EXPECT_TRUE(RunUntil([&completed] { return completed.has_value(); }));
        return completed.value_or(-1);
    }

    MemoryFileSystem files_;
};

TEST_F(RecoveryTest, WritesDownWhatBecameOfTheMessagesOfAnInterruptedAction) {
    Interrupt({HistoryAction::Unblock, theArchive, thePickup});
    files_.Add(theArchive + QStringLiteral("a"), "whole");
    files_.Add(thePickup + QStringLiteral("b"), "whole");
    EXPECT_EQ(Recover(), 1);
    EXPECT_EQ(Files({{}, {}, HistoryResult::Failed}), QStringList({QStringLiteral("a")}));
    EXPECT_EQ(Files({{}, {}, HistoryResult::Done}), QStringList({QStringLiteral("b")}));
    Close();
    EXPECT_EQ(Recover(), 0) << "once";
    EXPECT_EQ(Files().size(), 2);
}

TEST_F(RecoveryTest, MarksWhatAnInterruptedUndoHasPutBack) {
    Open();
    Act(HistoryAction::Unblock, {QStringLiteral("a"), QStringLiteral("b")});
    const auto action = Answer([](JournalDatabase& database) { return database.LatestToUndo(theArchive); });
    Close();
    Interrupt({HistoryAction::Undo, theArchive, thePickup, {}, action.value_or(0)});
    files_.Add(theArchive + QStringLiteral("a"), "whole");
    files_.Add(thePickup + QStringLiteral("b"), "whole");
    EXPECT_EQ(Recover(), 1);
    EXPECT_EQ(Files({{}, HistoryAction::Unblock, HistoryResult::Undone}), QStringList({QStringLiteral("a")}));
    EXPECT_EQ(Files({{}, HistoryAction::Unblock, HistoryResult::Done}), QStringList({QStringLiteral("b")}));
}

TEST_F(RecoveryTest, FindsMessagesInFoldersOfTheArchive) {
    const QString kept = theArchive + QStringLiteral(".kept/1/");
    const QString stayed = NativePath(QStringLiteral("new/1.a"));
    const QString gone = NativePath(QStringLiteral("cur/2.a:2,S"));
    Open();
    const auto record = journal_->Begin({HistoryAction::Delete, theArchive, thePickup, kept});
    record->Announce({stayed, gone});
    record->AwaitAnnounced();
    Close();
    files_.Add(theArchive + stayed, "whole");
    files_.Add(kept + QStringLiteral("2.a:2,S"), "whole");
    EXPECT_EQ(Recover(), 1);
    EXPECT_EQ(Files({{}, {}, HistoryResult::Failed}), QStringList({stayed}));
    EXPECT_EQ(Files({{}, {}, HistoryResult::Done}), QStringList({gone}));
}

TEST_F(RecoveryTest, EndsAnActionOfWhichEverythingWasWritten) {
    Open();
    const auto record = journal_->Begin({HistoryAction::Delete, theArchive});
    record->Announce({QStringLiteral("a")});
    record->AwaitAnnounced();
    record->Take(Handled(QStringLiteral("a")));
    Close();
    files_.Add(theArchive + QStringLiteral("another"), "whole");
    EXPECT_EQ(Recover(), 1);
    Close();
    EXPECT_EQ(Recover(), 0) << "once";
}

TEST_F(RecoveryTest, LeavesForLaterWhatCannotBeLookedAt) {
    Interrupt({HistoryAction::Delete, QStringLiteral("/away/")});
    EXPECT_EQ(Recover(), 0);
    EXPECT_EQ(Files(), QStringList());
    Close();
    files_.AddFolder(QStringLiteral("/away/"));
    EXPECT_EQ(Recover(), 0) << "where nothing is mounted, there is an empty folder";
    Close();
    files_.Add(QStringLiteral("/away/a"), "whole");
    EXPECT_EQ(Recover(), 1);
    EXPECT_EQ(Files({{}, {}, HistoryResult::Done}), QStringList({QStringLiteral("b")}));
}

TEST_F(RecoveryTest, LeavesTheActionsOfAProgramThatRunsAlone) {
    Open();
    const auto record = journal_->Begin({HistoryAction::Delete, theArchive});
    record->Announce({QStringLiteral("a")});
    record->AwaitAnnounced();
    Journal other(*pool_, clock_, {File()});
    JournalRecovery recovery(files_, *pool_, other);
    std::optional<int> completed;
    QObject::connect(&recovery, &JournalRecovery::Ended, [&completed](int actions) { completed = actions; });
    recovery.Start();
    ASSERT_TRUE(RunUntil([&completed] { return completed.has_value(); }));
    EXPECT_EQ(*completed, 0);
    EXPECT_EQ(Files(), QStringList());
}

} // namespace
