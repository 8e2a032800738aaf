#include "history/HistoryTable.h"

#include "history/HistoryTexts.h"
#include "history/JournalDatabase.h"

#include <QDateTime>

#include <algorithm>
#include <iterator>

namespace quellbox {

namespace {

/// With the distance to UTC, so that it means the same everywhere (ISO 8601).
QString ExactTime(const HistoryLine& line) {
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(line.facts.timeMs);
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODate);
}

} // namespace

TableColumns HistoryTableColumns(bool ratesByNumber) {
    return {{QStringLiteral("time"), HeaderOf(HistoryTime)},
            {QStringLiteral("action"), HeaderOf(HistoryActionName)},
            {QStringLiteral("result"), HeaderOf(HistoryResultName)},
            {QStringLiteral("reason"), Tr("Reason")},
            {QStringLiteral("sender"), HeaderOf(HistorySender)},
            {QStringLiteral("from"), Tr("From")},
            {QStringLiteral("to"), HeaderOf(HistoryTo)},
            {QStringLiteral("subject"), HeaderOf(HistorySubjectText)},
            {QStringLiteral("size"), Tr("Size"), true},
            {QStringLiteral("scl"), HeaderOf(HistoryScl), ratesByNumber},
            {QStringLiteral("file"), Tr("File")},
            {QStringLiteral("whitelistEntry"), Tr("Whitelist entry")},
            {QStringLiteral("archive"), Tr("Archive")},
            {QStringLiteral("pickup"), Tr("Pickup directory")},
            {QStringLiteral("kept"), Tr("Kept in")},
            {QStringLiteral("account"), Tr("Account")},
            {QStringLiteral("computer"), Tr("Computer")},
            {QStringLiteral("answer"), Tr("Answer of the mail server")}};
}

QStringList CellsOf(const HistoryLine& line) {
    const HistoryActionFacts& facts = line.facts;
    const HistoryEntry& entry = line.entry;
    const bool isOfMessage = IsOfMessage(facts.action);
    return {ExactTime(line), NameOf(facts.action), NameOf(entry.result),
            entry.reason,    entry.sender,         entry.from,
            entry.to,        entry.subject,        entry.size < 0 ? QString() : QString::number(entry.size),
            entry.rating,    entry.file,           isOfMessage ? QString() : entry.detail,
            facts.archive,   facts.pickup,         facts.kept,
            facts.account,   facts.computer,       isOfMessage ? entry.detail : QString()};
}

NextRow CellsOf(std::shared_ptr<const std::vector<HistoryLine>> lines) {
    return [lines = std::move(lines), next = size_t{0}](QStringList& cells) mutable {
        if (next == lines->size()) {
            return false;
        }
        cells = CellsOf((*lines)[next++]);
        return true;
    };
}

std::vector<HistoryLine> LinesOf(JournalDatabase& database, const HistoryFilter& filter, size_t most) {
    constexpr size_t step = 1000; // at a time: the length of a question has a limit
    const HistoryIds ids = database.Find(filter);
    const size_t wanted = std::min(most, ids.size());
    std::vector<HistoryLine> lines;
    lines.reserve(wanted);
    for (size_t first = 0; first < wanted; first += step) {
        const auto begin = ids.begin() + static_cast<std::ptrdiff_t>(first);
        const auto count = static_cast<std::ptrdiff_t>(std::min(step, wanted - first));
        std::vector<HistoryLine> some = database.Lines(HistoryIds(begin, begin + count));
        std::move(some.begin(), some.end(), std::back_inserter(lines));
    }
    return lines;
}

} // namespace quellbox
