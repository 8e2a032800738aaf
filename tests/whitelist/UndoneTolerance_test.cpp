#include "whitelist/UndoneTolerance.h"

#include "platform/RuntimeError.h"
#include "tests/history/JournalFile.h"
#include "tests/support/MemorySettingsStore.h"
#include "whitelist/WhitelistStore.h"

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

const QStringList stored = {u"joe@example.org"_s, u"@example.net"_s, u"ann@example.com"_s};

HistoryActionFacts Facts(HistoryAction action, const QString& detail = {}) {
    HistoryActionFacts facts;
    facts.action = action;
    facts.detail = detail;
    return facts;
}

class UndoneTolerance : public JournalTest {
protected:
    void SetUp() override {
        Open();
        ASSERT_EQ(SaveWhitelist(store_, stored), QStringList());
    }

    void Stop(const HistoryActionFacts& facts, const QString& sender) {
        StopTolerating(store_, *journal_, theArchive, facts, {sender});
    }

    MemorySettingsStore store_;
};

} // namespace

TEST_F(UndoneTolerance, WhatTheUserHadAddedGoesAsItCame) {
    const auto facts = Facts(HistoryAction::Tolerate, u"joe@example.org\n@example.net"_s);
    EXPECT_EQ(EntriesLeftByUndo(stored, facts, {u"other@example.com"_s}), QStringList(u"ann@example.com"_s));
    EXPECT_EQ(EntriesLeftByUndo(stored, Facts(HistoryAction::Tolerate), {u"joe@example.org"_s}), stored)
        << "the sender was on the list before";
}

TEST_F(UndoneTolerance, OfWhatARefreshHasToleratedGoesWhateverMatches) {
    const auto facts = Facts(HistoryAction::AutoTolerate);
    EXPECT_EQ(EntriesLeftByUndo(stored, facts, {u"x@example.net"_s, u"joe@example.org.au"_s}),
              QStringList(u"ann@example.com"_s));
    EXPECT_EQ(EntriesLeftByUndo(stored, facts, {u"x@example.org"_s}), stored);
}

TEST_F(UndoneTolerance, OtherActionsChangeNothing) {
    for (const HistoryAction action : {HistoryAction::Unblock, HistoryAction::Delete, HistoryAction::Cleanse}) {
        EXPECT_EQ(EntriesLeftByUndo(stored, Facts(action, stored.join(u'\n')), {u"joe@example.org"_s}), stored);
    }
}

TEST_F(UndoneTolerance, TheStoredListAndTheHistoryFollow) {
    Stop(Facts(HistoryAction::AutoTolerate), u"joe@example.org"_s);
    EXPECT_EQ(LoadWhitelist(store_), QStringList({u"@example.net"_s, u"ann@example.com"_s}));
    ASSERT_TRUE(RunUntil([this] { return Lines().size() == 1; }));
    const HistoryLine line = Lines().front();
    EXPECT_EQ(line.facts.action, HistoryAction::WhitelistRemove);
    EXPECT_EQ(line.facts.archive, theArchive);
    EXPECT_EQ(line.entry.detail, u"joe@example.org"_s);
}

TEST_F(UndoneTolerance, WithoutAChangeNothingIsStored) {
    const int flushes = store_.FlushCount();
    Stop(Facts(HistoryAction::AutoTolerate), u"nobody@example.biz"_s);
    EXPECT_EQ(store_.FlushCount(), flushes);
    EXPECT_EQ(LoadWhitelist(store_), stored);
}

TEST_F(UndoneTolerance, AStoreThatCannotBeWrittenIsTold) {
    store_.SetUnwritable();
    EXPECT_THROW(Stop(Facts(HistoryAction::AutoTolerate), u"joe@example.org"_s), FileError);
}

} // namespace quellbox
