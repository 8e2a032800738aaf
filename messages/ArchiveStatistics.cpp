#include "messages/ArchiveStatistics.h"

#include <QDate>

#include <algorithm>
#include <chrono>

namespace quellbox {

namespace {

qint64 DayOf(qint64 localSeconds) {
    return std::chrono::floor<std::chrono::days>(std::chrono::seconds(localSeconds)).count();
}

QString DayText(qint64 day) {
    return QDate(1970, 1, 1).addDays(day).toString(Qt::ISODate);
}

QString DomainOf(const QString& sender) {
    const QString domain = sender.mid(sender.lastIndexOf(QLatin1Char('@')) + 1);
    return (domain.isEmpty() ? sender : domain).toLower();
}

bool IsLarger(const StatisticsGroup& group, const StatisticsGroup& other) {
    return group.count != other.count ? group.count > other.count : group.value < other.value;
}

} // namespace

void ArchiveStatistics::AddTo(Sum& sum, qint64 bytes) {
    ++sum.count;
    sum.bytes += bytes;
}

void ArchiveStatistics::Add(const MessageRow& row) {
    const qint64 bytes = row.Size();
    const auto countText = [this, &row, bytes](int column, TextSums& sums) {
        text_.resize(0);
        row.AppendCell(column, text_);
        AddTo(sums[text_], bytes);
    };
    AddTo(total_, bytes);
    AddTo(days_[DayOf(row.Time())], bytes);
    countText(ColumnScl, ratings_);
    countText(ColumnTo, recipients_);
    AddTo(domains_[DomainOf(row.Tag())], bytes);
}

std::vector<StatisticsGroup> ArchiveStatistics::Groups(StatisticsBy by, size_t top) const {
    if (by == StatisticsBy::Day) {
        return Days(top);
    }
    const TextSums& sums = SumsBy(by);
    std::vector<StatisticsGroup> groups;
    groups.reserve(static_cast<size_t>(sums.size()));
    for (auto sum = sums.begin(); sum != sums.end(); ++sum) {
        groups.push_back({sum.key(), sum->count, sum->bytes});
    }
    const size_t wanted = std::min(top, groups.size());
    const auto end = groups.begin() + static_cast<std::ptrdiff_t>(wanted);
    if (wanted < groups.size()) {
        std::nth_element(groups.begin(), end, groups.end(), IsLarger);
        groups.erase(end, groups.end());
    }
    std::sort(groups.begin(), groups.end(), IsLarger);
    return groups;
}

std::vector<StatisticsGroup> ArchiveStatistics::Days(size_t top) const {
    std::vector<qint64> days(days_.keyBegin(), days_.keyEnd());
    std::sort(days.begin(), days.end());
    const size_t wanted = std::min(top, days.size());
    days.erase(days.begin(), days.end() - static_cast<std::ptrdiff_t>(wanted));
    std::vector<StatisticsGroup> groups;
    groups.reserve(wanted);
    for (const qint64 day : days) {
        const Sum sum = days_.value(day);
        groups.push_back({DayText(day), sum.count, sum.bytes});
    }
    return groups;
}

const ArchiveStatistics::TextSums& ArchiveStatistics::SumsBy(StatisticsBy by) const {
    if (by == StatisticsBy::Rating) {
        return ratings_;
    }
    return by == StatisticsBy::Domain ? domains_ : recipients_;
}

} // namespace quellbox
