#pragma once

#include "history/HistoryTypes.h"
#include "messages/TableFile.h"

#include <memory>
#include <vector>

namespace quellbox {

/// The columns of an exported history: those of the list and everything else that is known.
TableColumns HistoryTableColumns();

/// The rows of these lines, one after the other.
NextRow CellsOf(std::shared_ptr<const std::vector<HistoryLine>> lines);

} // namespace quellbox
