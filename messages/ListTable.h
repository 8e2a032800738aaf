#pragma once

#include "messages/MessageListModel.h"
#include "messages/TableLines.h"

#include <vector>

namespace quellbox {

/// The columns of the list as those of a table for other programs: the ones that are shown, and besides them the name
/// of the file and the envelope sender. `ratesByNumber` says whether ratings are numbers.
TableColumns ListTableColumns(bool ratesByNumber);

/// The cells of one row in those columns.
QStringList CellsOf(const MessageRow& row);

/// The rows in sight, in the order in which the list shows them.
std::vector<MessageRow> CopyOfRows(const MessageListModel& model);

/// The cells of these rows in those columns.
NextRow CellsOf(std::vector<MessageRow> rows);

} // namespace quellbox
