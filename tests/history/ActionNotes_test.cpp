#include "history/ActionNotes.h"

#include "messages/DisposalTask.h"
#include "tests/history/JournalFile.h"

namespace quellbox {

namespace {

using ActionNotes = JournalTest;

} // namespace

TEST_F(ActionNotes, EachActionOnMessagesHasOneOfTheHistory) {
    EXPECT_EQ(HistoryActionOf(Action::unblock), HistoryAction::Unblock);
    EXPECT_EQ(HistoryActionOf(Action::unblockTolerated), HistoryAction::Tolerate);
    EXPECT_EQ(HistoryActionOf(Action::remove), HistoryAction::Delete);
}

TEST_F(ActionNotes, ARefusalIsAnEntryThatSaysWhatTheUserReads) {
    Open();
    const FileFailure refusal(theArchive, QStringLiteral("No space left"));
    const QString text = NoteRefusal(*journal_, HistoryAction::Cleanse, theArchive, refusal);
    EXPECT_TRUE(text.contains(QStringLiteral("No space left"))) << text.toStdString();
    ASSERT_TRUE(RunUntil([this] { return Lines().size() == 1; }));
    const HistoryLine line = Lines().front();
    EXPECT_EQ(line.facts.action, HistoryAction::Cleanse);
    EXPECT_EQ(line.facts.archive, theArchive);
    EXPECT_EQ(line.entry.result, HistoryResult::Failed);
    EXPECT_EQ(line.entry.reason, text);
    EXPECT_TRUE(line.entry.file.isEmpty());
}

} // namespace quellbox
