#pragma once

#include "history/HistoryTypes.h"
#include "messages/TableLines.h"

#include <QStringList>

#include <limits>
#include <memory>
#include <vector>

namespace quellbox {

class JournalDatabase;

/// The columns of an exported history: those of the list and everything else that is known. `ratesByNumber` says
/// whether ratings are numbers; those of another server, which are none, stay texts.
TableColumns HistoryTableColumns(bool ratesByNumber = false);

/// The cells of one line in those columns.
QStringList CellsOf(const HistoryLine& line);

/// The rows of these lines, one after the other.
NextRow CellsOf(std::shared_ptr<const std::vector<HistoryLine>> lines);

/// The lines that a filter lets through, the newest first, and of those no more than `most`. Throws JournalError.
std::vector<HistoryLine> LinesOf(JournalDatabase& database, const HistoryFilter& filter,
                                 size_t most = std::numeric_limits<size_t>::max());

} // namespace quellbox
