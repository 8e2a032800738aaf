#pragma once

#include "messages/MessageListModel.h"
#include "settings/AppState.h"

#include <vector>

namespace quellbox {

/// What a search through the list found.
struct FindResult {
    std::vector<int> rows; ///< rows to select, ascending; the last one is to be shown
    QString missText;      ///< says that nothing was found; empty when something was
};

/// Searches column `HeaderField` for `FindText`, ignoring case, in the rows in sight after `FindPosition`: up to the
/// first match, or with `FindAll` to the end. `FindPosition` becomes the last match; only when it already was the last
/// row does the search start at the top. A miss resets both `FindPosition` and `FindText`. An empty text occurs in
/// every row. A column that the list does not have is empty in every row.
FindResult FindRows(const MessageListModel& model, AppState& state);

} // namespace quellbox
