#include "whitelist/ToleranceCandidates.h"

#include "tests/history/JournalFile.h"

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class ToleranceCandidatesTest : public JournalTest {
protected:
    void Unblock(const QString& sender, HistoryAction action = HistoryAction::Unblock) {
        MessageTexts texts;
        texts.tag = sender;
        journal_->Begin({action, theArchive})->Take({MessageRow(u"a.eml"_s, 1, 0, texts), std::nullopt});
    }

    std::vector<UnblockedSender> Senders() {
        return Answer([](JournalDatabase& database) { return database.UnblockedSenders(); });
    }

    std::string Names(const std::vector<UnblockedSender>& senders) {
        QStringList names;
        for (const UnblockedSender& sender : senders) {
            names.append(u"%1=%2"_s.arg(sender.sender).arg(sender.count));
        }
        return names.join(u' ').toStdString();
    }
};

} // namespace

TEST_F(ToleranceCandidatesTest, TheHistoryKnowsWhoseMessagesWereUnblocked) {
    Open();
    for (const QString& sender : {u"joe@x.org"_s, u"ann@x.org"_s, u"Joe@x.org"_s, u""_s}) {
        Unblock(sender);
    }
    Unblock(u"bob@x.org"_s, HistoryAction::Delete);
    Unblock(u"eve@x.org"_s, HistoryAction::Tolerate);
    EXPECT_EQ(Names(Senders()), "joe@x.org=2 ann@x.org=1");
    EXPECT_EQ(Senders().front().lastMs, clock_.Now().toMSecsSinceEpoch());
}

TEST_F(ToleranceCandidatesTest, WhatFailedOrWasTakenBackDoesNotCount) {
    Open();
    journal_->Begin({HistoryAction::Unblock, theArchive})->Take(FailedMessage(u"a.eml"_s, u"no"_s));
    EXPECT_EQ(Names(Senders()), "");
    Unblock(u"joe@x.org"_s);
    const std::vector<HistoryLine> lines = Lines({u"joe"_s, {}, {}});
    ASSERT_EQ(lines.size(), 1U);
    Answer([id = lines.front().id](JournalDatabase& database) {
        database.MarkUndone(id);
        return true;
    });
    EXPECT_EQ(Names(Senders()), "");
}

TEST_F(ToleranceCandidatesTest, WhoIsToleratedIsNoCandidate) {
    const std::vector<UnblockedSender> senders{{u"joe@x.org"_s, 3, 0}, {u"ann@y.org"_s, 2, 0}, {u"bob@z.org"_s, 1, 0}};
    EXPECT_EQ(Names(ToleranceCandidates(senders, {}, 9)), "joe@x.org=3 ann@y.org=2 bob@z.org=1");
    EXPECT_EQ(Names(ToleranceCandidates(senders, {u"@x.org"_s}, 9)), "ann@y.org=2 bob@z.org=1");
    EXPECT_EQ(Names(ToleranceCandidates(senders, {u"@x.org"_s}, 1)), "ann@y.org=2");
    EXPECT_EQ(Names(ToleranceCandidates(senders, {u"@x.org"_s, u"ann@y.org"_s, u"bob@z.org"_s}, 9)), "");
}

TEST_F(ToleranceCandidatesTest, LettersBeyondAsciiAreFoldedToo) {
    Open();
    for (const QString& sender : {u"\u00C4nn@x.org"_s, u"bob@x.org"_s, u"\u00E4nn@x.org"_s}) {
        Unblock(sender);
    }
    EXPECT_EQ(Names(Senders()), "\u00E4nn@x.org=2 bob@x.org=1");
}

TEST_F(ToleranceCandidatesTest, WhomTheWhitelistCannotTakeIsNoCandidate) {
    const std::vector<UnblockedSender> senders{{u"joe"_s, 3, 0}, {u"ann@local"_s, 2, 0}, {u"bob@z.org"_s, 1, 0}};
    EXPECT_EQ(Names(ToleranceCandidates(senders, {}, 1)), "bob@z.org=1");
}

TEST_F(ToleranceCandidatesTest, TheSendersOfSomeMessagesAreAskedForOnce) {
    const QStringList senders{u"Joe@x.org"_s, u""_s, u"ann@y.org"_s, u"joe@X.org"_s, u"nobody"_s, u"bob@z.org"_s};
    EXPECT_EQ(SendersToTolerate(senders, {}), QStringList({u"joe@x.org"_s, u"ann@y.org"_s, u"bob@z.org"_s}));
    EXPECT_EQ(SendersToTolerate(senders, {u"@y.org"_s, u"joe@x.org"_s}), QStringList({u"bob@z.org"_s}));
}

} // namespace quellbox
