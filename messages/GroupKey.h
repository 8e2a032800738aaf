#pragma once

#include "messages/MessageRow.h"
#include "messages/SubjectKey.h"

#include <QString>

#include <optional>
#include <vector>

namespace quellbox {

/// By what messages are counted.
enum class StatisticsBy {
    Day,       ///< of the local time of the file
    Rating,    ///< text of the column "SCL%"
    Domain,    ///< of the envelope sender, in lower case; one without a domain counts as a whole
    Recipient, ///< text of the column "To"
    Subject,   ///< what SubjectKey tells of it
    Level      ///< of the rating, as RatingLevelOf() has it
};

/// The day of a message: of its local time, counted from 1970-01-01.
qint64 DayOf(const MessageRow& row);

/// A day as in "2026-06-15".
QString DayText(qint64 day);

/// Finds out of each message to which group it belongs. Made once and asked again and again, so that it needs no memory
/// in the long run.
class GroupKey {
public:
    explicit GroupKey(bool ratesByNumber) : ratesByNumber_(ratesByNumber) {}

    /// What all messages of the group have in common, as a text; of a day DayText(), of a level its number. Lent until
    /// the next call.
    const QString& Of(const MessageRow& row, StatisticsBy by);

    /// Whether Of() is that key.
    bool Is(const QString& key, const MessageRow& row, StatisticsBy by);

    int LevelOf(const MessageRow& row);

    bool RatesByNumber() const { return ratesByNumber_; }

private:
    void ReadSubject(const MessageRow& row);
    void ReadDomain(const MessageRow& row);
    void ReadCell(const MessageRow& row, int column);

    bool ratesByNumber_;
    SubjectKey subjects_;
    QString text_;
    QString recipients_;
};

/// One thing that messages of a group have in common.
struct GroupTrait {
    StatisticsBy by = StatisticsBy::Day;
    QString key; ///< as GroupKey::Of() has it

    bool operator==(const GroupTrait&) const = default;
};

/// The messages that have all of these traits.
using MessageGroup = std::vector<GroupTrait>;

/// Tells which messages belong to a group, whatever has become of the list since they were counted.
class GroupMatcher {
public:
    GroupMatcher(MessageGroup group, bool ratesByNumber);

    bool Holds(const MessageRow& row);

private:
    bool Has(const MessageRow& row, const GroupTrait& trait);

    MessageGroup group_;
    GroupKey keys_;
    std::optional<qint64> day_; // none where the group names no day, or what is none
};

} // namespace quellbox
