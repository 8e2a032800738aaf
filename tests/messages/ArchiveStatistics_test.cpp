#include "messages/ArchiveStatistics.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

qint64 LocalSecondsOf(const QDate& day, const QTime& time) {
    return QDateTime(day, time, Qt::UTC).toSecsSinceEpoch();
}

const qint64 noon = LocalSecondsOf({2026, 6, 15}, {12, 0});

class ArchiveStatisticsTest : public testing::Test {
protected:
    void Add(const MessageTexts& texts, qint64 size = 1, qint64 time = noon) {
        statistics_.Add(MessageRow(u"a.eml"_s, size, time, texts));
    }

    void AddSender(const QString& sender) {
        MessageTexts texts;
        texts.tag = sender;
        Add(texts);
    }

    void AddRecipient(const QString& recipient, qint64 size = 1) {
        MessageTexts texts;
        texts.to = recipient;
        Add(texts, size);
    }

    /// The groups as "value=count/bytes".
    std::string Groups(StatisticsBy by, size_t top = ArchiveStatistics::all) const {
        QStringList groups;
        for (const StatisticsGroup& group : statistics_.Groups(by, top)) {
            groups += u"%1=%2/%3"_s.arg(group.value).arg(group.count).arg(group.bytes);
        }
        return groups.join(u' ').toStdString();
    }

    ArchiveStatistics statistics_{{StatisticsBy::Day, StatisticsBy::Rating, StatisticsBy::Domain,
                                   StatisticsBy::Recipient, StatisticsBy::Subject, StatisticsBy::Level}};
};

} // namespace

TEST_F(ArchiveStatisticsTest, WithoutMessagesThereAreNoGroups) {
    for (const StatisticsBy by :
         {StatisticsBy::Day, StatisticsBy::Rating, StatisticsBy::Domain, StatisticsBy::Recipient}) {
        EXPECT_EQ(Groups(by), "");
        EXPECT_EQ(Groups(by, 3), "");
    }
    EXPECT_EQ(statistics_.Count(), 0);
    EXPECT_EQ(statistics_.Bytes(), 0);
}

TEST_F(ArchiveStatisticsTest, EachMessageCountsInEachKindOfGroup) {
    Add({u"Ann"_s, u"x"_s, u"y"_s, u"9 99.0"_s, u"joe@example.org"_s}, 100);
    Add({u"Ann"_s, u"z"_s, u"y"_s, u"7"_s, u"ann@example.org"_s}, 20);
    EXPECT_EQ(Groups(StatisticsBy::Day), "2026-06-15=2/120");
    EXPECT_EQ(Groups(StatisticsBy::Rating), "7=1/20 9 99.0=1/100");
    EXPECT_EQ(Groups(StatisticsBy::Domain), "example.org=2/120");
    EXPECT_EQ(Groups(StatisticsBy::Recipient), "Ann=2/120");
    EXPECT_EQ(statistics_.Count(), 2);
    EXPECT_EQ(statistics_.Bytes(), 120);
}

TEST_F(ArchiveStatisticsTest, ADayEndsAtMidnight) {
    Add({}, 1, LocalSecondsOf({2026, 6, 15}, {23, 59, 59}));
    Add({}, 2, LocalSecondsOf({2026, 6, 16}, {0, 0}));
    Add({}, 4, LocalSecondsOf({1969, 12, 31}, {23, 59, 59}));
    Add({}, 8, LocalSecondsOf({1970, 1, 1}, {0, 0}));
    EXPECT_EQ(Groups(StatisticsBy::Day), "1969-12-31=1/4 1970-01-01=1/8 2026-06-15=1/1 2026-06-16=1/2");
}

TEST_F(ArchiveStatisticsTest, OfDaysTheLatestAreGivenInTheirOrder) {
    for (const int day : {20, 3, 11}) {
        Add({}, day, LocalSecondsOf({2026, 6, day}, {12, 0}));
    }
    EXPECT_EQ(Groups(StatisticsBy::Day, 2), "2026-06-11=1/11 2026-06-20=1/20");
    EXPECT_EQ(Groups(StatisticsBy::Day, 3), "2026-06-03=1/3 2026-06-11=1/11 2026-06-20=1/20");
    EXPECT_EQ(Groups(StatisticsBy::Day, 4), "2026-06-03=1/3 2026-06-11=1/11 2026-06-20=1/20");
    EXPECT_EQ(Groups(StatisticsBy::Day, 0), "");
}

TEST_F(ArchiveStatisticsTest, OtherGroupsComeByNumberAndThenByName) {
    for (const char* name : {"d", "b", "c", "a", "c", "e", "b"}) {
        AddRecipient(QLatin1String(name));
    }
    EXPECT_EQ(Groups(StatisticsBy::Recipient), "b=2/2 c=2/2 a=1/1 d=1/1 e=1/1");
    EXPECT_EQ(Groups(StatisticsBy::Recipient, 3), "b=2/2 c=2/2 a=1/1");
    EXPECT_EQ(Groups(StatisticsBy::Recipient, 5), "b=2/2 c=2/2 a=1/1 d=1/1 e=1/1");
    EXPECT_EQ(Groups(StatisticsBy::Recipient, 0), "");
}

TEST_F(ArchiveStatisticsTest, ADomainIsWhatFollowsTheLastAtInLowerCase) {
    AddSender(u"Joe@Example.ORG"_s);
    AddSender(u"\"a@b\"@example.org"_s);
    AddSender(u"joe@EXAMPLE.org"_s);
    AddSender(u"MAILER-DAEMON"_s);
    AddSender(u"joe@"_s);
    EXPECT_EQ(Groups(StatisticsBy::Domain), "example.org=3/3 joe@=1/1 mailer-daemon=1/1");
}

TEST_F(ArchiveStatisticsTest, MessagesWithoutATextAreAGroupOfTheirOwn) {
    AddSender({});
    AddSender({});
    AddSender(u"joe@example.org"_s);
    EXPECT_EQ(Groups(StatisticsBy::Domain), "=2/2 example.org=1/1");
    EXPECT_EQ(Groups(StatisticsBy::Rating), "=3/3");
}

TEST_F(ArchiveStatisticsTest, TextsThatDifferInCaseAreDifferentOnes) {
    AddRecipient(u"ann"_s);
    AddRecipient(u"Ann"_s);
    EXPECT_EQ(Groups(StatisticsBy::Recipient), "Ann=1/1 ann=1/1");
}

TEST_F(ArchiveStatisticsTest, LargeFilesAddUp) {
    const qint64 large = qint64{3} << 30;
    AddRecipient(u"a"_s, large);
    AddRecipient(u"a"_s, large);
    EXPECT_EQ(Groups(StatisticsBy::Recipient), "a=2/" + std::to_string(2 * large));
}

TEST_F(ArchiveStatisticsTest, TheLargestOfManyGroupsAreFound) {
    constexpr int count = 5'000;
    for (int group = 0; group < count; ++group) {
        const QString name = QString::number(group).rightJustified(5, u'0');
        for (int message = 0; message <= group % 3; ++message) {
            AddRecipient(name);
        }
    }
    const auto everything = statistics_.Groups(StatisticsBy::Recipient);
    const auto some = statistics_.Groups(StatisticsBy::Recipient, 100);
    ASSERT_EQ(everything.size(), static_cast<size_t>(count));
    ASSERT_EQ(some.size(), 100U);
    EXPECT_TRUE(std::equal(some.begin(), some.end(), everything.begin()));
    EXPECT_EQ(some.front(), (StatisticsGroup{u"00002"_s, 3, 3, u"00002"_s}));
    EXPECT_EQ(everything.back().value, u"04998"_s);
}

TEST_F(ArchiveStatisticsTest, SubjectsThatDifferInNumbersAreOneGroup) {
    MessageTexts texts;
    for (const char* subject : {"Invoice 12", "Re: invoice 7", "Hello", "Hello"}) {
        texts.subject = QLatin1String(subject);
        Add(texts, 10);
    }
    EXPECT_EQ(Groups(StatisticsBy::Subject), "Hello=2/20 Invoice …=2/20");
    EXPECT_EQ(statistics_.GroupCount(StatisticsBy::Subject), 2U);
    EXPECT_EQ(statistics_.Groups(StatisticsBy::Subject, 5).back().key, u"invoice …"_s);
}

TEST_F(ArchiveStatisticsTest, LevelsComeInTheirOrder) {
    MessageTexts texts;
    for (const char* rating : {"9 99.0", "10", "9 42.0", ""}) {
        texts.scl = QLatin1String(rating);
        Add(texts);
    }
    EXPECT_EQ(Groups(StatisticsBy::Level), "none=1/1 9=2/2 10=1/1");
    EXPECT_EQ(Groups(StatisticsBy::Level, 1), "10=1/1");
}

TEST_F(ArchiveStatisticsTest, WhatIsNotCountedHasNoGroups) {
    ArchiveStatistics statistics({StatisticsBy::Domain});
    statistics.Add(MessageRow(u"a.eml"_s, 1, noon, {}));
    EXPECT_EQ(statistics.Groups(StatisticsBy::Domain).size(), 1U);
    EXPECT_TRUE(statistics.Groups(StatisticsBy::Day).empty());
    EXPECT_TRUE(statistics.Groups(StatisticsBy::Recipient).empty());
    EXPECT_TRUE(statistics.LevelsOfDays().empty());
}

} // namespace quellbox
