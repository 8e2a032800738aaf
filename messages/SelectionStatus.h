#pragma once

#include "messages/MessageListModel.h"
#include "messages/StatusPanels.h"
#include "settings/AppState.h"

#include <vector>

namespace quellbox {

/// Rows `first` to `last` of the list.
struct RowRange {
    int first = 0;
    int last = 0;
};

/// What counting the selection yields.
struct SelectionStatus {
    qint16 SelectedCount = 0;
    StatusPanel info;
    StatusPanel size;
    QString count;
    bool hasRows = false; ///< the panel texts are to be shown
};

/// Counts the selected rows and adds up their sizes. The count of messages is that of the whole list, also where only a
/// part of it is in sight. `selected` holds ascending ranges without overlap; `filtered`
/// tells that the button "filter" is pressed. In an empty list the panel texts are left empty and are not to be shown.
/// Throws OverflowError at 2 GiB and more and above 32,767 rows.
SelectionStatus ComputeSelectionStatus(const MessageListModel& model, const std::vector<RowRange>& selected,
                                       const AppState& state, bool filtered);

} // namespace quellbox
