#include "messages/ArchiveStatistics.h"

#include "messages/RatingLevel.h"

#include <algorithm>
#include <iterator>
#include <numeric>
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
    const size_t number = counted.texts.NumberOf(keys_.Of(row, counted.by));
    if (number == counted.sums.size()) {
        counted.sums.emplace_back();
    }
    Sum& sum = counted.sums[number];
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
    return counted.texts.Count() + counted.numbers.size();
}

QString ArchiveStatistics::ValueOf(StatisticsBy by, QStringView key, const Sum& sum) {
    if (by != StatisticsBy::Subject) {
        return key.toString();
    }
    const QString subject = sum.first->Cell(ColumnSubject);
    return sum.isVaried ? SubjectKey().Title(subject, sum.first->Cell(ColumnTo)) : subject;
}

std::vector<StatisticsGroup> ArchiveStatistics::Groups(StatisticsBy by, size_t top) const {
    const Counted& counted = By(by);
    if (IsNumbered(by)) {
        return NumberGroups(counted, top);
    }
    std::vector<size_t> numbers(counted.sums.size());
    std::iota(numbers.begin(), numbers.end(), size_t{0});
    const auto isLarger = [&counted](size_t left, size_t right) {
        const qint64 more = counted.sums[left].count - counted.sums[right].count;
        return more != 0 ? more > 0 : counted.texts.Text(left) < counted.texts.Text(right);
    };
    const size_t wanted = std::min(top, numbers.size());
    const auto end = numbers.begin() + static_cast<std::ptrdiff_t>(wanted);
    std::partial_sort(numbers.begin(), end, numbers.end(), isLarger);
    std::vector<StatisticsGroup> groups;
    groups.reserve(wanted);
    for (auto number = numbers.begin(); number != end; ++number) {
        const QStringView key = counted.texts.Text(*number);
        const Sum& sum = counted.sums[*number];
        groups.push_back({ValueOf(by, key, sum), sum.count, sum.bytes, key.toString()});
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
