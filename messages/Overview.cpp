#include "messages/Overview.h"

#include "mail/DisplayText.h"
#include "messages/ArchiveStatistics.h"

#include <QCoreApplication>
#include <QDate>

#include <algorithm>
#include <map>
#include <numeric>

namespace quellbox {

namespace {

// More than these nobody looks at, and no picture shows.
constexpr size_t mostDays = 366;
constexpr size_t mostGroups = 200;

// Days without messages stand between others as gaps, but a vacation is not to fill the picture.
constexpr qint64 widestGap = 7;

struct KindTexts {
    const char* title;
    const char* group;
};

constexpr std::array<KindTexts, overviewKinds.size()> kindTexts{
    {{QT_TRANSLATE_NOOP("quellbox", "Messages by day and rating"), QT_TRANSLATE_NOOP("quellbox", "Day")},
     {QT_TRANSLATE_NOOP("quellbox", "Ratings"), QT_TRANSLATE_NOOP("quellbox", "Rating")},
     {QT_TRANSLATE_NOOP("quellbox", "Sender domains"), QT_TRANSLATE_NOOP("quellbox", "Sender domain")},
     {QT_TRANSLATE_NOOP("quellbox", "Recipients"), QT_TRANSLATE_NOOP("quellbox", "Recipient")},
     {QT_TRANSLATE_NOOP("quellbox", "Alike subjects"), QT_TRANSLATE_NOOP("quellbox", "Subject")}}};

const KindTexts& TextsOf(OverviewKind kind) {
    return kindTexts[static_cast<size_t>(kind)];
}

StatisticsBy GroupingOf(OverviewKind kind) {
    constexpr std::array groupings{StatisticsBy::Day, StatisticsBy::Level, StatisticsBy::Domain,
                                   StatisticsBy::Recipient, StatisticsBy::Subject};
    return groupings[static_cast<size_t>(kind)];
}

QString LabelOf(const QString& value) {
    const QString label = CleanseForDisplay(ShownText(value));
    return label.isEmpty() ? QCoreApplication::translate("quellbox", "(none)") : label;
}

/// A picture whose bars have one part each.
OverviewPicture PictureOf(OverviewKind kind, const ArchiveStatistics& statistics) {
    const StatisticsBy by = GroupingOf(kind);
    OverviewPicture picture{kind};
    for (const StatisticsGroup& group : statistics.Groups(by, mostGroups)) {
        const MessageGroup messages{{by, group.key}};
        picture.bars.push_back({LabelOf(group.value), {{group.count, -1, messages}}, messages});
    }
    picture.leftOut = statistics.GroupCount(by) - picture.bars.size();
    return picture;
}

/// The levels, the highest on top, in the colours that they have in the picture of the days.
OverviewPicture PictureOfLevels(const ArchiveStatistics& statistics) {
    OverviewPicture picture = PictureOf(OverviewKind::Levels, statistics);
    int series = 0;
    for (OverviewBar& bar : picture.bars) {
        picture.series.append(bar.label);
        bar.parts.front().series = series++;
    }
    std::reverse(picture.bars.begin(), picture.bars.end());
    return picture;
}

OverviewBar BarOfDay(qint64 day, const ArchiveStatistics::LevelCounts& counts, const std::map<int, int>& seriesOf) {
    const GroupTrait ofDay{StatisticsBy::Day, DayText(day)};
    OverviewBar bar{ofDay.key, {}, {ofDay}};
    for (const auto& [level, count] : counts) {
        bar.parts.push_back(
            {count, seriesOf.at(level), {ofDay, GroupTrait{StatisticsBy::Level, QString::number(level)}}});
    }
    return bar;
}

OverviewPicture PictureOfDays(const ArchiveStatistics& statistics) {
    OverviewPicture picture{OverviewKind::Days};
    std::map<int, int> seriesOf;
    for (const StatisticsGroup& level : statistics.Groups(StatisticsBy::Level)) {
        seriesOf.emplace(level.key.toInt(), static_cast<int>(picture.series.size()));
        picture.series.append(LabelOf(level.value));
    }
    const auto& days = statistics.LevelsOfDays();
    auto day = std::prev(days.end(), static_cast<std::ptrdiff_t>(std::min(mostDays, days.size())));
    picture.leftOut = static_cast<size_t>(std::distance(days.begin(), day));
    for (qint64 next = 0; day != days.end(); next = day->first + 1, ++day) {
        const bool isNear = !picture.bars.empty() && day->first - next <= widestGap;
        for (qint64 empty = isNear ? next : day->first; empty < day->first; ++empty) {
            picture.bars.push_back(BarOfDay(empty, {}, seriesOf));
        }
        picture.bars.push_back(BarOfDay(day->first, day->second, seriesOf));
    }
    return picture;
}

} // namespace

qint64 OverviewBar::Count() const {
    return std::accumulate(parts.begin(), parts.end(), qint64{0},
                           [](qint64 count, const OverviewPart& part) { return count + part.count; });
}

Overview CountOverview(const std::vector<MessageRow>& rows, bool ratesByNumber) {
    ArchiveStatistics statistics(
        {StatisticsBy::Day, StatisticsBy::Level, StatisticsBy::Domain, StatisticsBy::Recipient, StatisticsBy::Subject},
        ratesByNumber);
    for (const MessageRow& row : rows) {
        statistics.Add(row);
    }
    return {{PictureOfDays(statistics), PictureOfLevels(statistics), PictureOf(OverviewKind::Senders, statistics),
             PictureOf(OverviewKind::Recipients, statistics), PictureOf(OverviewKind::Subjects, statistics)},
            statistics.Count(),
            ratesByNumber,
            statistics.Count()};
}

QString TitleOf(OverviewKind kind) {
    return QCoreApplication::translate("quellbox", TextsOf(kind).title);
}

QString GroupCaptionOf(OverviewKind kind) {
    return QCoreApplication::translate("quellbox", TextsOf(kind).group);
}

} // namespace quellbox
