#pragma once

#include "messages/GroupKey.h"
#include "messages/TextNumbers.h"

#include <QString>

#include <limits>
#include <map>
#include <optional>
#include <vector>

namespace quellbox {

/// Messages that have the same in common.
struct StatisticsGroup {
    QString value;    ///< what people read of it: a day as in "2026-06-15", else a text; empty where messages have none
    qint64 count = 0; ///< messages
    qint64 bytes = 0; ///< of their files
    QString key{};    ///< as GroupKey::Of() has it

    bool operator==(const StatisticsGroup&) const = default;
};

/// Counts the messages of an archive, row by row, in memory that grows with the number of groups only.
class ArchiveStatistics {
public:
    static constexpr size_t all = std::numeric_limits<size_t>::max();

    /// Counts by these only. Whether ratings are numbers concerns their levels.
    explicit ArchiveStatistics(std::vector<StatisticsBy> by, bool ratesByNumber = false);

    void Add(const MessageRow& row);

    /// Of all messages.
    qint64 Count() const { return total_.count; }
    qint64 Bytes() const { return total_.bytes; }

    /// The days and the levels in their order, of which the last `top` are given; of all else the `top` largest groups,
    /// those with most messages first and equal ones in the order of the code units of their keys. Subjects have a
    /// group's title; where all are the same it is the first one, as it stands.
    std::vector<StatisticsGroup> Groups(StatisticsBy by, size_t top = all) const;

    /// How many groups there are.
    size_t GroupCount(StatisticsBy by) const;

    /// How many messages of each level there are of each day; only where both are counted.
    using LevelCounts = std::map<int, qint64>;
    const std::map<qint64, LevelCounts>& LevelsOfDays() const { return levelsOfDays_; }

private:
    struct Sum {
        qint64 count = 0;
        qint64 bytes = 0;
        std::optional<MessageRow> first{}; ///< of a group of subjects
        bool isVaried = false;             ///< and another subject is in it
    };
    using NumberSums = std::map<qint64, Sum>;

    struct Counted {
        StatisticsBy by;
        TextNumbers texts{};
        std::vector<Sum> sums{}; ///< of the texts, by their numbers
        NumberSums numbers{};    ///< of days since 1970 and of levels
    };

    void AddTo(Counted& counted, const MessageRow& row, qint64 bytes);
    void NoteSubject(Sum& sum, const MessageRow& row);
    const Counted& By(StatisticsBy by) const;
    std::vector<StatisticsGroup> NumberGroups(const Counted& counted, size_t top) const;
    static QString ValueOf(StatisticsBy by, QStringView key, const Sum& sum);
    QString NumberText(StatisticsBy by, qint64 number) const;

    Sum total_;
    GroupKey keys_;
    std::vector<Counted> counted_;
    std::map<qint64, LevelCounts> levelsOfDays_;
    bool countsLevelsOfDays_ = false;
    QString text_; // lent to Add(), as the other one
    QString firstText_;
};

} // namespace quellbox
