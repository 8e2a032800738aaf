#include "messages/ArchiveStatistics.h"

#include <QDate>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace quellbox {

namespace {

qint64 DayOf(qint64 localSeconds) {
    return std::chrono::floor<std::chrono::days>(std::chrono::seconds(localSeconds)).count();
}

QString DayText(qint64 day) {
    return QDate(1970, 1, 1).addDays(day).toString(Qt::ISODate);
}

/// Qt takes a microsecond for it, and hardly a domain has other letters than those of ASCII.
QString LowerCased(QString text) {
    if (std::any_of(text.cbegin(), text.cend(), [](QChar unit) { return unit.unicode() >= 0x80; })) {
        return text.toLower();
    }
    for (QChar& unit : text) {
        if (unit >= u'A' && unit <= u'Z') {
            unit = QChar(unit.unicode() | 0x20);
        }
    }
    return text;
}

QString DomainOf(const QString& sender) {
    QString domain = sender.mid(sender.lastIndexOf(u'@') + 1);
    return LowerCased(domain.isEmpty() ? sender : std::move(domain));
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
    groups.reserve(sums.size());
    for (const auto& [text, sum] : sums) {
        groups.push_back({text, sum.count, sum.bytes});
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
    const size_t wanted = std::min(top, days_.size());
    std::vector<StatisticsGroup> groups;
    groups.reserve(wanted);
    for (auto day = std::prev(days_.end(), static_cast<std::ptrdiff_t>(wanted)); day != days_.end(); ++day) {
        groups.push_back({DayText(day->first), day->second.count, day->second.bytes});
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
