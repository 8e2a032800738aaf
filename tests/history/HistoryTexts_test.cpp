#include "history/HistoryTexts.h"

#include <QSet>

#include <gtest/gtest.h>

#include <algorithm>

using namespace quellbox;

namespace {

HistoryLine Line() {
    HistoryLine line;
    line.facts.action = HistoryAction::Unblock;
    line.entry.file = QStringLiteral("a.eml");
    return line;
}

TEST(HistoryTexts, EveryActionAndResultHasAName) {
    for (const HistoryAction action : HistoryActions()) {
        EXPECT_FALSE(NameOf(action).isEmpty()) << static_cast<int>(action);
    }
    for (const HistoryResult result : HistoryResults()) {
        EXPECT_FALSE(NameOf(result).isEmpty()) << static_cast<int>(result);
    }
    EXPECT_EQ(HistoryActions().size(), 9U);
    EXPECT_EQ(NameOf(static_cast<HistoryAction>(99)), QString()) << "of a later version";
}

TEST(HistoryTexts, EveryActionAndResultHasAKeyOfItsOwn) {
    QSet<QString> keys;
    for (const HistoryAction action : HistoryActions()) {
        keys.insert(KeyOf(action));
    }
    EXPECT_EQ(keys.size(), static_cast<qsizetype>(HistoryActions().size()));
    for (const HistoryResult result : HistoryResults()) {
        keys.insert(KeyOf(result));
    }
    EXPECT_EQ(keys.size(), static_cast<qsizetype>(HistoryActions().size() + HistoryResults().size()));
    EXPECT_FALSE(keys.contains(QString()));
}

TEST(HistoryTexts, TheSenderIsThatOfTheEnvelopeOrElseOfTheHeader) {
    HistoryLine line = Line();
    EXPECT_EQ(CellOf(line, HistorySender), QString());
    line.entry.detail = QStringLiteral("@example.com");
    line.facts.action = HistoryAction::Unblock;
    EXPECT_EQ(CellOf(line, HistorySender), QString()) << "it is what a mail server has answered";
    line.facts.action = HistoryAction::WhitelistAdd;
    EXPECT_EQ(CellOf(line, HistorySender), line.entry.detail);
    line.entry.from = QStringLiteral("Jo");
    EXPECT_EQ(CellOf(line, HistorySender), line.entry.from);
    line.entry.sender = QStringLiteral("jo@example.com");
    EXPECT_EQ(CellOf(line, HistorySender), line.entry.sender);
}

TEST(HistoryTexts, WithoutASubjectTheFileIsNamed) {
    HistoryLine line = Line();
    EXPECT_EQ(CellOf(line, HistorySubjectText), QStringLiteral("a.eml"));
    line.entry.subject = QStringLiteral("About");
    EXPECT_EQ(CellOf(line, HistorySubjectText), QStringLiteral("About"));
}

TEST(HistoryTexts, WhatASenderWritesCannotReorderOrBreakACell) {
    HistoryLine line = Line();
    line.entry.subject = QStringLiteral("a\nb\u202Ec");
    EXPECT_EQ(CellOf(line, HistorySubjectText), QStringLiteral("a bc"));
    line.entry.sender = QString(100'000, QLatin1Char('x'));
    EXPECT_EQ(CellOf(line, HistorySender).size(), 1001);
}

TEST(HistoryTexts, OnlyWhatIsDoneAndStillThereCanBeUndone) {
    HistoryLine line = Line();
    EXPECT_TRUE(CanBeUndone(line));
    line.entry.result = HistoryResult::Failed;
    EXPECT_FALSE(CanBeUndone(line));
    line.entry.result = HistoryResult::Undone;
    EXPECT_FALSE(CanBeUndone(line));
    line.entry.result = HistoryResult::Done;
    line.facts.action = HistoryAction::Delete;
    EXPECT_FALSE(CanBeUndone(line)) << "for good";
    line.facts.kept = QStringLiteral("/archive/.kept/");
    EXPECT_TRUE(CanBeUndone(line));
    for (const HistoryAction action : {HistoryAction::WhitelistAdd, HistoryAction::PickupTest, HistoryAction::Undo}) {
        line.facts.action = action;
        EXPECT_FALSE(CanBeUndone(line));
    }
}

TEST(HistoryTexts, DetailsLeaveOutWhatIsNotKnown) {
    HistoryLine line = Line();
    const auto names = [&line] {
        QStringList found;
        for (const auto& [name, value] : DetailsOf(line, QLocale::c())) {
            found.append(name);
        }
        return found;
    };
    EXPECT_EQ(names(), QStringList({QStringLiteral("Time"), QStringLiteral("Action"), QStringLiteral("Result"),
                                    QStringLiteral("File")}));
    line.entry.size = 0;
    line.entry.reason = QStringLiteral("no right");
    EXPECT_TRUE(names().contains(QStringLiteral("Size")));
    EXPECT_TRUE(names().contains(QStringLiteral("Reason")));
}

} // namespace
