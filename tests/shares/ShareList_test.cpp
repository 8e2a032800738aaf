#include "tests/shares/ShareFixture.h"

#include "contents/MessageLoader.h"

namespace quellbox {

class ShareList : public ShareTest {};

TEST_P(ShareList, ListsTheMessagesInOrderOfArrival) {
    ASSERT_NO_FATAL_FAILURE(DeliverMany(Behind("archive"), 20));
    const RefreshResult result = Refresh();
    EXPECT_EQ(result.outcome, RefreshOutcome::Completed) << result.reason.toStdString();
    ASSERT_EQ(model_.Count(), 20);
    EXPECT_EQ(Keys().front(), QStringLiteral("00000.EML"));
    EXPECT_EQ(Keys().back(), QStringLiteral("00019.EML"));
    const MessageRow& row = model_.Row(7);
    EXPECT_EQ(row.Cell(ColumnDate), QStringLiteral("2026-06-15 09:13:27"));
    EXPECT_EQ(row.Cell(ColumnSubject), QStringLiteral("About 00007.EML"));
    EXPECT_EQ(row.Cell(ColumnSize), QString::number(delivered_.at(QStringLiteral("00007.EML")).size()));
    EXPECT_EQ(row.Tag(), QStringLiteral("eve@spam.example"));
}

TEST_P(ShareList, AddsWhatArrivesLater) {
    ASSERT_NO_FATAL_FAILURE(DeliverMany(Behind("archive"), 5));
    Refresh();
    ASSERT_NO_FATAL_FAILURE(DeliverMany(Behind("archive"), 3));
    const RefreshResult result = Refresh(true);
    EXPECT_EQ(result.outcome, RefreshOutcome::Completed) << result.reason.toStdString();
    EXPECT_FALSE(result.cannotFollow);
    ASSERT_EQ(model_.Count(), 8);
    EXPECT_FALSE(model_.Row(4).IsUnread());
    EXPECT_TRUE(model_.Row(5).IsUnread());
    EXPECT_EQ(model_.Row(7).Cell(ColumnSubject), QStringLiteral("About 00007.EML"));
}

TEST_P(ShareList, ShowsAMessage) {
    ASSERT_NO_FATAL_FAILURE(DeliverMany(Behind("archive"), 1));
    Refresh();
    MessageLoader loader(*files_, pool_);
    std::vector<MessageAnswer> answers;
    loader.Load({state_.ArchiveDir.PathOf(Keys().front()), true, true, true},
                [&answers](const MessageAnswer& answer) { answers.push_back(answer); });
    EXPECT_TRUE(WaitLong([&loader] { return !loader.IsBusy(); }));
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[0].kind, MessageAnswer::Kind::Text);
    EXPECT_EQ(answers[0].text.toUtf8(), delivered_.begin()->second);
    EXPECT_EQ(answers[1].kind, MessageAnswer::Kind::Structure);
}

TEST_P(ShareList, SaysThatAFolderIsMissing) {
    Use(Mounted("archive") + QStringLiteral("missing/"), Mounted("pickup"));
    EXPECT_EQ(Refresh().outcome, RefreshOutcome::ArchiveMissing);
}

QUELLBOX_ON_EACH_CLIENT(ShareList);

} // namespace quellbox
