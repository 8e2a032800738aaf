#pragma once

#include "history/HistoryTypes.h"
#include "messages/TableFile.h"

#include <memory>
#include <vector>

namespace quellbox {

/// The columns of an exported history: those of the list and everything else that is known. `ratesByNumber` says
/// whether ratings are numbers; those of another server, which are none, stay texts.
TableColumns HistoryTableColumns(bool ratesByNumber = false);

/// The rows of these lines, one after the other.
NextRow CellsOf(std::shared_ptr<const std::vector<HistoryLine>> lines);

} // namespace quellbox
