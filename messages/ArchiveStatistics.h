#pragma once

#include "messages/MessageRow.h"

#include <QHashFunctions>
#include <QString>

#include <limits>
#include <map>
#include <unordered_map>
#include <vector>

namespace quellbox {

/// By what messages are counted.
enum class StatisticsBy {
    Day,      ///< of the local time of the file
    Rating,   ///< text of the column "SCL%"
    Domain,   ///< of the envelope sender, in lower case; one without a domain counts as a whole
    Recipient ///< text of the column "To"
};

/// Messages that have the same in common.
struct StatisticsGroup {
    QString value;    ///< a day as in "2026-06-15", else a text; empty where messages have none
    qint64 count = 0; ///< messages
    qint64 bytes = 0; ///< of their files

    bool operator==(const StatisticsGroup&) const = default;
};

/// Counts the messages of an archive, row by row, in memory that grows with the number of groups only.
class ArchiveStatistics {
public:
    static constexpr size_t all = std::numeric_limits<size_t>::max();

    void Add(const MessageRow& row);

    /// Of all messages.
    qint64 Count() const { return total_.count; }
    qint64 Bytes() const { return total_.bytes; }

    /// The days in their order, of which the latest `top` are given; of all else the `top` largest groups, those with
    /// most messages first and equal ones in the order of the code units of their texts.
    std::vector<StatisticsGroup> Groups(StatisticsBy by, size_t top = all) const;

private:
    struct Sum {
        qint64 count = 0;
        qint64 bytes = 0;
    };
    /// Not noexcept, so that a map keeps the hash of each text and does not calculate it anew when it grows.
    struct TextHash {
        size_t operator()(const QString& text) const { return qHash(text); }
    };
    using TextSums = std::unordered_map<QString, Sum, TextHash>; // half the time of QHash

    const TextSums& SumsBy(StatisticsBy by) const;
    std::vector<StatisticsGroup> Days(size_t top) const;
    static void AddTo(Sum& sum, qint64 bytes);

    Sum total_;
    std::map<qint64, Sum> days_; // by days since 1970
    TextSums ratings_;
    TextSums domains_;
    TextSums recipients_;
    QString text_; // lent to Add(), so that a text that is known already needs no memory
};

} // namespace quellbox
