#include "messages/ArchiveStatistics.h"

#include "messages/RatingLevel.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quellbox {

namespace {

bool IsLarger(const StatisticsGroup& group, const StatisticsGroup& other) {
    return group.count != other.count ? group.count > other.count : group.value < other.value;
}

bool IsNumbered(StatisticsBy by) {
    return by == StatisticsBy::Day || by == StatisticsBy::Level;
}

void AddMessage(auto& sum, qint64 bytes) {
    ++sum.count;
    sum.bytes += bytes;
}

} // namespace

ArchiveStatistics::ArchiveStatistics(std::vector<StatisticsBy> by, bool ratesByNumber) : keys_(ratesByNumber) {
    for (const StatisticsBy one : by) {
        counted_.push_back({one});
    }
    const auto counts = [&by](StatisticsBy one) { return std::find(by.begin(), by.end(), one) != by.end(); };
    countsLevelsOfDays_ = counts(StatisticsBy::Day) && counts(StatisticsBy::Level);
}

void ArchiveStatistics::Add(const MessageRow& row) {
    const qint64 bytes = row.Size();
    AddMessage(total_, bytes);
    for (Counted& counted : counted_) {
        AddTo(counted, row, bytes);
    }
    if (countsLevelsOfDays_) {
        ++levelsOfDays_[DayOf(row)][keys_.LevelOf(row)];
    }
}

void ArchiveStatistics::AddTo(Counted& counted, const MessageRow& row, qint64 bytes) {
    if (IsNumbered(counted.by)) {
        const qint64 number = counted.by == StatisticsBy::Day ? DayOf(row) : keys_.LevelOf(row);
        AddMessage(counted.numbers[number], bytes);
        return;
    }
    Sum& sum = counted.texts[keys_.Of(row, counted.by)];
    AddMessage(sum, bytes);
    if (counted.by == StatisticsBy::Subject) {
        NoteSubject(sum, row);
    }
}

void ArchiveStatistics::NoteSubject(Sum& sum, const MessageRow& row) {
    if (sum.isVaried) {
        return;
    }
    text_.resize(0);
    row.AppendCell(ColumnSubject, text_);
    if (sum.count == 1) {
        sum.subject = text_;
        sum.recipient = row.Cell(ColumnTo);
    } else {
        sum.isVaried = sum.subject != text_;
    }
}

const ArchiveStatistics::Counted& ArchiveStatistics::By(StatisticsBy by) const {
    static const Counted nothing{StatisticsBy::Rating};
    const auto found =
        std::find_if(counted_.begin(), counted_.end(), [by](const Counted& counted) { return counted.by == by; });
    return found == counted_.end() ? nothing : *found;
}

size_t ArchiveStatistics::GroupCount(StatisticsBy by) const {
    const Counted& counted = By(by);
    return counted.texts.size() + counted.numbers.size();
}

QString ArchiveStatistics::ValueOf(const Counted& counted, const QString& key, const Sum& sum) const {
    if (counted.by != StatisticsBy::Subject) {
        return key;
    }
    return sum.isVaried ? SubjectKey().Title(sum.subject, sum.recipient) : sum.subject;
}

std::vector<StatisticsGroup> ArchiveStatistics::Groups(StatisticsBy by, size_t top) const {
    const Counted& counted = By(by);
    if (IsNumbered(by)) {
        return NumberGroups(counted, top);
    }
    std::vector<StatisticsGroup> groups;
    groups.reserve(counted.texts.size());
    for (const auto& [text, sum] : counted.texts) {
        groups.push_back({ValueOf(counted, text, sum), sum.count, sum.bytes, text});
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

QString ArchiveStatistics::NumberText(StatisticsBy by, qint64 number) const {
    return by == StatisticsBy::Day ? DayText(number) : RatingLevelText(static_cast<int>(number), keys_.RatesByNumber());
}

std::vector<StatisticsGroup> ArchiveStatistics::NumberGroups(const Counted& counted, size_t top) const {
    const NumberSums& sums = counted.numbers;
    const size_t wanted = std::min(top, sums.size());
    std::vector<StatisticsGroup> groups;
    groups.reserve(wanted);
    for (auto sum = std::prev(sums.end(), static_cast<std::ptrdiff_t>(wanted)); sum != sums.end(); ++sum) {
        const QString key = counted.by == StatisticsBy::Day ? DayText(sum->first) : QString::number(sum->first);
        groups.push_back({NumberText(counted.by, sum->first), sum->second.count, sum->second.bytes, key});
    }
    return groups;
}

} // namespace quellbox
