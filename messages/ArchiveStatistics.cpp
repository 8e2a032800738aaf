#include "messages/ArchiveStatistics.h"

#include "messages/RatingLevel.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quellbox {

namespace {

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
    if (!sum.first) {
        sum.first.emplace(row);
        return;
    }
    if (!sum.isVaried) {
        text_.resize(0);
        firstText_.resize(0);
        row.AppendCell(ColumnSubject, text_);
        sum.first->AppendCell(ColumnSubject, firstText_);
        sum.isVaried = text_ != firstText_;
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

QString ArchiveStatistics::ValueOf(StatisticsBy by, const QString& key, const Sum& sum) {
    if (by != StatisticsBy::Subject) {
        return key;
    }
    const QString subject = sum.first->Cell(ColumnSubject);
    return sum.isVaried ? SubjectKey().Title(subject, sum.first->Cell(ColumnTo)) : subject;
}

std::vector<StatisticsGroup> ArchiveStatistics::Groups(StatisticsBy by, size_t top) const {
    const Counted& counted = By(by);
    if (IsNumbered(by)) {
        return NumberGroups(counted, top);
    }
    using Entry = const TextSums::value_type*;
    std::vector<Entry> entries;
    entries.reserve(counted.texts.size());
    for (const auto& entry : counted.texts) {
        entries.push_back(&entry);
    }
    const auto isLarger = [](Entry left, Entry right) {
        const qint64 count = left->second.count;
        return count != right->second.count ? count > right->second.count : left->first < right->first;
    };
    const size_t wanted = std::min(top, entries.size());
    const auto end = entries.begin() + static_cast<std::ptrdiff_t>(wanted);
    std::partial_sort(entries.begin(), end, entries.end(), isLarger);
    std::vector<StatisticsGroup> groups;
    groups.reserve(wanted);
    for (auto entry = entries.begin(); entry != end; ++entry) {
        const auto& [key, sum] = **entry;
        groups.push_back({ValueOf(by, key, sum), sum.count, sum.bytes, key});
    }
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
