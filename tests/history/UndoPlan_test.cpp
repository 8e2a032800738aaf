#include "history/UndoPlan.h"

#include "messages/KeptFolder.h"
#include "tests/history/JournalFile.h"
#include "tests/support/NativePath.h"

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

UndoItem Item(qint64 id, qint64 action, const QString& file, const QString& kept = {}) {
    UndoItem item;
    item.id = id;
    item.action = action;
    item.facts.action = kept.isEmpty() ? HistoryAction::Unblock : HistoryAction::Delete;
    item.facts.archive = theArchive;
    item.facts.pickup = thePickup;
    item.facts.kept = kept;
    item.entry.file = file;
    item.entry.sender = u"Joe@Example.ORG"_s;
    item.entry.size = 1200;
    return item;
}

UndoPart PartOf(const UndoItem& item) {
    return {item.facts, {item}};
}

PutBackFate Failure(const QString& path, FileProblem problem) {
    return {false, FileFailure(FileError(path, u"in the system's words"_s, problem))};
}

/// The reason that the user reads.
QString ReasonOf(const UndoPart& part, const PutBackFate& fate) {
    const std::vector<FileFailure> failures = OutcomeOf(part, {{fate}}).failures;
    return failures.size() == 1 ? failures.front().reason : u"%1 failures"_s.arg(failures.size());
}

const QString keptFolder = u"/archive/.quellbox-deleted/k/"_s;

class UndoPlan : public JournalTest {
protected:
    QStringList LatestFiles(const QString& archive) {
        QStringList files;
        for (const UndoItem& item :
             Answer([archive](JournalDatabase& database) { return LatestItemsToUndo(database, archive); })) {
            files += item.entry.file;
        }
        files.sort();
        return files;
    }
};

} // namespace

TEST_F(UndoPlan, EachActionIsAPartOfItsOwnInTheirOrder) {
    const std::deque<UndoPart> parts =
        DivideByAction({Item(9, 4, u"a"_s, keptFolder), Item(8, 4, u"b"_s, keptFolder), Item(5, 2, u"c"_s)});
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[0].facts.kept, keptFolder);
    ASSERT_EQ(parts[0].items.size(), 2U);
    EXPECT_EQ(parts[0].items[1].id, 8);
    EXPECT_TRUE(parts[1].facts.kept.isEmpty());
    ASSERT_EQ(parts[1].items.size(), 1U);
    EXPECT_EQ(parts[1].items[0].entry.file, u"c"_s);
    EXPECT_TRUE(DivideByAction({}).empty());
}

TEST_F(UndoPlan, TheRecordSaysWhichActionIsTakenBack) {
    const HistorySubject subject = SubjectOfUndo(PartOf(Item(9, 4, u"a"_s, keptFolder)));
    EXPECT_EQ(subject.action, HistoryAction::Undo);
    EXPECT_EQ(subject.undoes, 4);
    EXPECT_EQ(subject.archive, theArchive);
    EXPECT_EQ(subject.pickup, thePickup);
    EXPECT_EQ(subject.kept, keptFolder);
}

TEST_F(UndoPlan, WhatWasUnblockedComesOutOfThePickupDirectory) {
    const UndoPart part = PartOf(Item(9, 4, u"a.eml"_s));
    const std::vector<PutBack> files = FilesToPutBack(part);
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].from, u"/pickup/a.eml"_s);
    EXPECT_EQ(files[0].to, u"/archive/a.eml"_s);
    EXPECT_EQ(files[0].entry, 9);
    EXPECT_EQ(files[0].message.Key(), u"a.eml"_s);
    EXPECT_EQ(files[0].message.Size(), 1200);
    EXPECT_EQ(files[0].message.Tag(), u"Joe@Example.ORG"_s);
    EXPECT_TRUE(FoldersEmptiedBy(part).isEmpty());
}

TEST_F(UndoPlan, WhatWasDeletedComesOutOfTheFolderThatGoesWhenItIsEmpty) {
    const UndoPart part = PartOf(Item(9, 4, u"a.eml"_s, keptFolder));
    EXPECT_EQ(FilesToPutBack(part).at(0).from, keptFolder + u"a.eml"_s);
    EXPECT_EQ(FoldersEmptiedBy(part), QStringList({keptFolder, KeptFoldersOf(theArchive)}));
}

TEST_F(UndoPlan, AMessageOfAFolderInTheArchiveGoesBackThere) {
    const QString name = NativePath(u"cur/1.a"_s);
    const UndoPart part = PartOf(Item(9, 4, name, keptFolder));
    EXPECT_EQ(FilesToPutBack(part).at(0).from, keptFolder + u"1.a"_s);
    EXPECT_EQ(FilesToPutBack(part).at(0).to, u"/archive/"_s + name);
}

TEST_F(UndoPlan, AFailureIsToldInWordsForThoseWhoPutAMessageBack) {
    const UndoPart unblocked = PartOf(Item(9, 4, u"a.eml"_s));
    const UndoPart deleted = PartOf(Item(9, 4, u"a.eml"_s, keptFolder));
    EXPECT_EQ(ReasonOf(unblocked, Failure(u"/pickup/a.eml"_s, FileProblem::Missing)),
              u"The mail server has taken the message out of the pickup directory."_s);
    EXPECT_EQ(ReasonOf(deleted, Failure(keptFolder + u"a.eml"_s, FileProblem::Missing)),
              u"The message is not kept any more."_s);
    EXPECT_EQ(ReasonOf(deleted, Failure(u"/archive/a.eml"_s, FileProblem::Exists)),
              u"The archive holds a message of this name already."_s);
    for (const PutBackFate& fate :
         {Failure(u"/archive/a.eml"_s, FileProblem::Missing), Failure(u"/pickup/a.eml"_s, FileProblem::NoRight)}) {
        EXPECT_EQ(ReasonOf(unblocked, fate), u"in the system's words"_s) << fate.failure->path.toStdString();
    }
}

TEST_F(UndoPlan, OnlySendersOfMessagesThatAreBackAreNamed) {
    UndoPart part = PartOf(Item(9, 4, u"a"_s));
    part.items.push_back(Item(8, 4, u"b"_s));
    part.items.back().entry.sender = u"ann@example.net"_s;
    const PutBackFate failed = Failure(u"/pickup/b"_s, FileProblem::Missing);
    const UndoOutcome outcome = OutcomeOf(part, {{{true, std::nullopt}, failed}});
    EXPECT_EQ(outcome.senders, QSet<QString>{u"joe@example.org"_s});
    EXPECT_EQ(outcome.failures.size(), 1U);
    EXPECT_TRUE(outcome.isWhole);
}

TEST_F(UndoPlan, WhatWasCancelledIsNotWhole) {
    UndoPart part = PartOf(Item(9, 4, u"a"_s));
    part.items.push_back(Item(8, 4, u"b"_s));
    const UndoOutcome outcome = OutcomeOf(part, {{{true, std::nullopt}, {}}});
    EXPECT_FALSE(outcome.isWhole);
    EXPECT_EQ(outcome.senders.size(), 1);
    EXPECT_TRUE(outcome.failures.empty());
}

TEST_F(UndoPlan, TheLatestActionIsThatOfTheArchive) {
    Open();
    Act(HistoryAction::Unblock, {u"a"_s, u"b"_s});
    Act(HistoryAction::Unblock, {u"c"_s, u"d"_s});
    ASSERT_TRUE(RunUntil([this] { return Lines().size() == 4; }));
    EXPECT_EQ(LatestFiles(theArchive), QStringList({u"c"_s, u"d"_s}));
    EXPECT_EQ(LatestFiles(u"/elsewhere/"_s), QStringList());
    Act(HistoryAction::Delete, {u"e"_s});
    ASSERT_TRUE(RunUntil([this] { return Lines().size() == 5; }));
    EXPECT_EQ(LatestFiles(theArchive), QStringList()) << "it is gone for good";
}

} // namespace quellbox
