#include "messages/GroupKey.h"

#include "messages/RatingLevel.h"

#include <QDate>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quellbox {

namespace {

const QDate firstDay(1970, 1, 1);

/// Qt takes a microsecond for it, and hardly a domain has other letters than those of ASCII.
void LowerCase(QString& text) {
    if (std::any_of(text.cbegin(), text.cend(), [](QChar unit) { return unit.unicode() >= 0x80; })) {
        text = text.toLower();
        return;
    }
    for (QChar& unit : text) {
        if (unit >= u'A' && unit <= u'Z') {
            unit = QChar(unit.unicode() | 0x20);
        }
    }
}

} // namespace

qint64 DayOf(const MessageRow& row) {
    return std::chrono::floor<std::chrono::days>(std::chrono::seconds(row.Time())).count();
}

QString DayText(qint64 day) {
    return firstDay.addDays(day).toString(Qt::ISODate);
}

void GroupKey::ReadCell(const MessageRow& row, int column) {
    text_.resize(0);
    row.AppendCell(column, text_);
}

void GroupKey::ReadSubject(const MessageRow& row) {
    recipients_.resize(0);
    row.AppendCell(ColumnTo, recipients_);
    ReadCell(row, ColumnSubject);
}

void GroupKey::ReadDomain(const MessageRow& row) {
    text_.resize(0);
    row.AppendTag(text_);
    const qsizetype begin = text_.lastIndexOf(u'@') + 1;
    if (begin < text_.size()) {
        text_.remove(0, begin);
    }
    LowerCase(text_);
}

const QString& GroupKey::Of(const MessageRow& row, StatisticsBy by) {
    switch (by) {
    case StatisticsBy::Day:
        text_ = DayText(DayOf(row));
        break;
    case StatisticsBy::Rating:
        ReadCell(row, ColumnScl);
        break;
    case StatisticsBy::Domain:
        ReadDomain(row);
        break;
    case StatisticsBy::Recipient:
        ReadCell(row, ColumnTo);
        break;
    case StatisticsBy::Subject:
        ReadSubject(row);
        return subjects_.Of(text_, recipients_);
    case StatisticsBy::Level:
        text_ = QString::number(LevelOf(row));
        break;
    }
    return text_;
}

bool GroupKey::Is(const QString& key, const MessageRow& row, StatisticsBy by) {
    if (by != StatisticsBy::Subject) {
        return Of(row, by) == key;
    }
    ReadSubject(row);
    return subjects_.Is(key, text_, recipients_);
}

int GroupKey::LevelOf(const MessageRow& row) {
    ReadCell(row, ColumnScl);
    return RatingLevelOf(text_, ratesByNumber_);
}

GroupMatcher::GroupMatcher(MessageGroup group, bool ratesByNumber) : group_(std::move(group)), keys_(ratesByNumber) {
    for (const GroupTrait& trait : group_) {
        const QDate day = trait.by == StatisticsBy::Day ? QDate::fromString(trait.key, Qt::ISODate) : QDate();
        if (day.isValid()) {
            day_ = firstDay.daysTo(day);
        }
    }
}

bool GroupMatcher::Holds(const MessageRow& row) {
    return std::all_of(group_.begin(), group_.end(), [&](const GroupTrait& trait) { return Has(row, trait); });
}

// To write a day takes longer than all the rest.
bool GroupMatcher::Has(const MessageRow& row, const GroupTrait& trait) {
    return trait.by == StatisticsBy::Day ? DayOf(row) == day_ : keys_.Is(trait.key, row, trait.by);
}

} // namespace quellbox
