#include "messages/Overview.h"

#include "messages/OverviewTable.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <algorithm>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class OverviewTest : public testing::Test {
protected:
    void Add(const QDate& day, const QString& rating, const QString& sender = {}, const QString& subject = {},
             const QString& to = {}) {
        const qint64 time = QDateTime(day, QTime(12, 0), Qt::UTC).toSecsSinceEpoch();
        rows_.emplace_back(QString::number(rows_.size()), 1, time, MessageTexts{to, {}, subject, rating, sender});
    }

    OverviewPicture Picture(OverviewKind kind, bool ratesByNumber = false) const {
        return CountOverview(rows_, ratesByNumber).Of(kind);
    }

    /// The bars as "label=count+count".
    std::string Bars(OverviewKind kind, bool ratesByNumber = false) const {
        QStringList bars;
        for (const OverviewBar& bar : Picture(kind, ratesByNumber).bars) {
            QStringList parts;
            for (const OverviewPart& part : bar.parts) {
                parts.append(QString::number(part.count));
            }
            bars.append(bar.label + u'=' + parts.join(u'+'));
        }
        return bars.join(u' ').toStdString();
    }

    /// The keys of the rows of a group.
    std::string RowsOf(const MessageGroup& group, bool ratesByNumber = false) const {
        GroupMatcher matcher(group, ratesByNumber);
        QStringList keys;
        for (const MessageRow& row : rows_) {
            if (matcher.Holds(row)) {
                keys.append(row.Key());
            }
        }
        return keys.join(u' ').toStdString();
    }

    std::vector<MessageRow> rows_;
    const QDate june_{2026, 6, 15};
};

} // namespace

TEST_F(OverviewTest, WithoutMessagesNothingIsShown) {
    for (const OverviewKind kind : overviewKinds) {
        EXPECT_EQ(Picture(kind), (OverviewPicture{kind}));
        EXPECT_FALSE(TitleOf(kind).isEmpty());
    }
}

TEST_F(OverviewTest, DaysAreStackedByRating) {
    Add(june_, u"9 99"_s);
    Add(june_, u"9 42"_s);
    Add(june_, u"7"_s);
    Add(june_.addDays(1), u""_s);
    EXPECT_EQ(Bars(OverviewKind::Days), "2026-06-15=1+2 2026-06-16=1");
    const OverviewPicture days = Picture(OverviewKind::Days);
    EXPECT_EQ(days.series, QStringList({u"none"_s, u"7"_s, u"9"_s}));
    EXPECT_EQ(RowsOf(days.bars[0].group), "0 1 2");
    EXPECT_EQ(RowsOf(days.bars[0].parts[0].group), "2");
    EXPECT_EQ(RowsOf(days.bars[0].parts[1].group), "0 1");
    EXPECT_EQ(RowsOf(days.bars[1].parts[0].group), "3");
}

TEST_F(OverviewTest, DaysWithoutMessagesAreGapsOfOneWeekAtMost) {
    Add(june_, u"9"_s);
    Add(june_.addDays(2), u"9"_s);
    EXPECT_EQ(Bars(OverviewKind::Days), "2026-06-15=1 2026-06-16= 2026-06-17=1");
    rows_.pop_back();
    Add(june_.addDays(8), u"9"_s);
    EXPECT_EQ(Picture(OverviewKind::Days).bars.size(), 9U) << "seven days between";
    rows_.pop_back();
    Add(june_.addDays(9), u"9"_s);
    EXPECT_EQ(Picture(OverviewKind::Days).bars.size(), 2U) << "eight days between";
}

TEST_F(OverviewTest, RatingsBeginWithTheHighestAndHaveTheColoursOfTheDays) {
    for (const QString& rating : {u"7"_s, u"9"_s, u""_s, u"9"_s}) {
        Add(june_, rating);
    }
    EXPECT_EQ(Bars(OverviewKind::Levels), "9=2 7=1 none=1");
    const OverviewPicture levels = Picture(OverviewKind::Levels);
    EXPECT_EQ(levels.series, Picture(OverviewKind::Days).series);
    EXPECT_EQ(levels.bars.front().parts.front().series, 2);
    EXPECT_EQ(RowsOf(levels.bars.back().group), "2");
}

TEST_F(OverviewTest, RatingsThatAreNumbersAreInSpans) {
    for (const QString& rating : {u"6.1"_s, u"9.9"_s, u"12"_s}) {
        Add(june_, rating);
    }
    EXPECT_EQ(Bars(OverviewKind::Levels, true), "10 to 15=1 5 to 10=2");
    EXPECT_EQ(RowsOf(Picture(OverviewKind::Levels, true).bars.back().group, true), "0 1");
}

TEST_F(OverviewTest, SendersCountByDomain) {
    Add(june_, u"9"_s, u"a@Spam.example"_s);
    Add(june_, u"9"_s, u"b@spam.example"_s);
    Add(june_, u"9"_s, u"c@ham.example"_s);
    Add(june_, u"9"_s);
    EXPECT_EQ(Bars(OverviewKind::Senders), "spam.example=2 (none)=1 ham.example=1");
    EXPECT_EQ(RowsOf(Picture(OverviewKind::Senders).bars[0].group), "0 1");
    EXPECT_EQ(RowsOf(Picture(OverviewKind::Senders).bars[1].group), "3");
}

TEST_F(OverviewTest, AlikeSubjectsAreOneGroup) {
    Add(june_, u"9"_s, {}, u"Ann, invoice 1"_s, u"ann@example.org"_s);
    Add(june_, u"9"_s, {}, u"Bob, invoice 2"_s, u"bob@example.org"_s);
    Add(june_, u"9"_s, {}, u"Only 7 left"_s);
    Add(june_, u"9"_s, {}, u"Only 7 left"_s);
    EXPECT_EQ(Bars(OverviewKind::Subjects), "Only 7 left=2 …, invoice …=2") << "what does not change stays";
    EXPECT_EQ(RowsOf(Picture(OverviewKind::Subjects).bars[1].group), "0 1");
    EXPECT_EQ(Bars(OverviewKind::Recipients), "(none)=2 ann@example.org=1 bob@example.org=1");
}

TEST_F(OverviewTest, OfManyGroupsTheLargestAreShownAndTheOthersCounted) {
    for (int sender = 0; sender < 205; ++sender) {
        Add(june_, u"9"_s, u"x@s%1.example"_s.arg(sender));
    }
    Add(june_, u"9"_s, u"x@s204.example"_s);
    const OverviewPicture senders = Picture(OverviewKind::Senders);
    EXPECT_EQ(senders.bars.size(), 200U);
    EXPECT_EQ(senders.leftOut, 5U);
    EXPECT_EQ(senders.bars.front().label, u"s204.example"_s);
}

TEST_F(OverviewTest, LabelsAreFitForDisplay) {
    Add(june_, u"9"_s, u"x@a\u202Eb.example"_s);
    EXPECT_EQ(Bars(OverviewKind::Senders), "ab.example=1");
    EXPECT_EQ(RowsOf(Picture(OverviewKind::Senders).bars.front().group), "0");
}

TEST_F(OverviewTest, EachRowBelongsToOneBarOfEachPicture) {
    for (int row = 0; row < 300; ++row) {
        Add(june_.addDays(row % 11), QString::number(row % 10), u"x@s%1.example"_s.arg(row % 7),
            u"offer %1 of %2"_s.arg(row).arg(row % 3 == 0 ? u"cars"_s : u"boats"_s), u"to%1@x.org"_s.arg(row % 5));
    }
    for (const OverviewKind kind : overviewKinds) {
        const OverviewPicture picture = Picture(kind);
        size_t rows = 0;
        for (const OverviewBar& bar : picture.bars) {
            GroupMatcher matcher(bar.group, false);
            const auto count =
                std::count_if(rows_.begin(), rows_.end(), [&](const auto& row) { return matcher.Holds(row); });
            EXPECT_EQ(count, bar.Count()) << bar.label.toStdString();
            rows += static_cast<size_t>(count);
        }
        EXPECT_EQ(rows, rows_.size()) << TitleOf(kind).toStdString();
    }
}

TEST_F(OverviewTest, WhatIsNoDayIsTheDayOfNoMessage) {
    Add(QDate(1970, 1, 1), u"9"_s);
    EXPECT_EQ(RowsOf({{StatisticsBy::Day, u"1970-01-01"_s}}), "0");
    EXPECT_EQ(RowsOf({{StatisticsBy::Day, u"1970-13-01"_s}}), "");
    EXPECT_EQ(RowsOf({{StatisticsBy::Day, QString()}}), "");
}

TEST_F(OverviewTest, AGroupHasItsPlaceInAPicture) {
    Add(june_, u"9"_s);
    Add(june_.addDays(1), u"7"_s);
    Add(june_.addDays(1), u"9"_s);
    const OverviewPicture picture = Picture(OverviewKind::Days);
    for (const OverviewPlace place : {OverviewPlace{0}, OverviewPlace{1}, OverviewPlace{0, 0}, OverviewPlace{1, 1}}) {
        EXPECT_EQ(PlaceWith(picture, GroupAt(picture, place)), place);
    }
    EXPECT_EQ(PlaceWith(picture, {{StatisticsBy::Day, u"2026-06-17"_s}}), OverviewPlace());
}

TEST_F(OverviewTest, APictureIsATableToo) {
    Add(june_, u"9"_s, u"x@=1+1"_s);
    Add(june_, u"7"_s, u"x@=1+1"_s);
    OverviewTable table;
    table.SetPicture(Picture(OverviewKind::Days));
    EXPECT_EQ(TabbedText(table).toStdString(), "Day\tRating\tMessages\n2026-06-15\t7\t1\n2026-06-15\t9\t1\n");
    EXPECT_EQ(table.PlaceOf(1), (OverviewPlace{0, 1}));
    EXPECT_EQ(table.RowOf({0, 1}), 1);
    EXPECT_EQ(table.RowOf({0, OverviewPlace::whole}), 0);
    EXPECT_EQ(table.RowOf({}), -1);
    EXPECT_EQ(table.PlaceOf(2), OverviewPlace());
    table.SetPicture(Picture(OverviewKind::Senders));
    EXPECT_EQ(TabbedText(table).toStdString(), "Sender domain\tMessages\n'=1+1\t2\n");
    EXPECT_EQ(CsvText(table).toStdString(), "\"Sender domain\",\"Messages\"\r\n\"'=1+1\",2\r\n");
}

TEST_F(OverviewTest, PlacesAreNamed) {
    Add(june_, u"9"_s, u"x@spam.example"_s);
    EXPECT_EQ(NameAt(Picture(OverviewKind::Days), {0, 0}), u"2026-06-15, rating 9"_s);
    EXPECT_EQ(NameAt(Picture(OverviewKind::Days), {0}), u"2026-06-15"_s);
    EXPECT_EQ(NameAt(Picture(OverviewKind::Levels), {0}), u"rating 9"_s);
    EXPECT_EQ(NameAt(Picture(OverviewKind::Senders), {0, 0}), u"spam.example"_s);
    EXPECT_EQ(CountAt(Picture(OverviewKind::Senders), {0, 0}), 1);
}

} // namespace quellbox
