#include "whitelist/WhitelistNotes.h"

#include "tests/history/JournalFile.h"
#include "tests/support/MemorySettingsStore.h"
#include "whitelist/WhitelistStore.h"

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class WhitelistNotes : public JournalTest {
protected:
    QStringList Note(const QStringList& before, const QStringList& now) {
        EXPECT_EQ(SaveWhitelist(store_, now), QStringList());
        return NoteWhitelistChanges(*journal_, store_, theArchive, before);
    }

    /// The entries as "action entry", in any order.
    QStringList Noted(size_t count) {
        EXPECT_TRUE(RunUntil([this, count] { return Lines().size() == count; }));
        QStringList noted;
        for (const HistoryLine& line : Lines()) {
            EXPECT_EQ(line.facts.archive, theArchive);
            noted += (line.facts.action == HistoryAction::WhitelistAdd ? u"+ "_s : u"- "_s) + line.entry.detail;
        }
        noted.sort();
        return noted;
    }

    MemorySettingsStore store_;
};

} // namespace

TEST_F(WhitelistNotes, WhatCameAndWhatWentIsWrittenDown) {
    Open();
    EXPECT_EQ(Note({u"a@x.org"_s, u"b@x.org"_s}, {u"b@x.org"_s, u"@y.org"_s, u"c@z.org"_s}),
              QStringList({u"@y.org"_s, u"c@z.org"_s}));
    EXPECT_EQ(Noted(3), QStringList({u"+ @y.org"_s, u"+ c@z.org"_s, u"- a@x.org"_s}));
}

TEST_F(WhitelistNotes, WithoutAChangeThereIsNothingToWrite) {
    Open();
    EXPECT_EQ(Note({u"a@x.org"_s}, {u"a@x.org"_s}), QStringList());
    EXPECT_EQ(Note({u"a@x.org"_s}, {}), QStringList());
    EXPECT_EQ(Noted(1), QStringList(u"- a@x.org"_s));
}

} // namespace quellbox
