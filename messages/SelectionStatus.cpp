#include "messages/SelectionStatus.h"

#include "messages/FormatSize.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <limits>

namespace quellbox {

namespace {

qint32 AddSize(qint32 total, qint64 size) {
    if (size > qint64{std::numeric_limits<qint32>::max()} - total) {
        throw OverflowError(QCoreApplication::translate(
            "quellbox", "Overflow: the selected messages hold 2 GiB or more. Select fewer messages."));
    }
    return static_cast<qint32>(total + size);
}

QString CountText(const MessageListModel& model, const AppState& state, bool filtered) {
    if (!filtered) {
        return QCoreApplication::translate("quellbox", "%n messages", nullptr, model.TotalCount());
    }
    const QString count = QString::number(model.TotalCount());
    const bool known = state.FilterDays >= 0 && state.FilterDays < static_cast<int>(state.FilterCaptions.size());
    return known ? count + state.FilterCaptions[static_cast<size_t>(state.FilterDays)] : count;
}

} // namespace

SelectionStatus ComputeSelectionStatus(const MessageListModel& model, const std::vector<RowRange>& selected,
                                       const AppState& state, bool filtered) {
    SelectionStatus status;
    status.hasRows = model.TotalCount() > 0;
    if (!status.hasRows) {
        return status;
    }
    int count = 0;
    qint32 total = 0;
    for (const RowRange& range : selected) {
        for (int row = range.first; row <= range.last; ++row) {
            ++count;
            total = AddSize(total, model.Row(row).Size());
        }
    }
    if (count > std::numeric_limits<qint16>::max()) {
        throw OverflowError(QCoreApplication::translate(
            "quellbox", "Overflow: at most 32,767 messages can be selected. Select fewer messages."));
    }
    status.SelectedCount = static_cast<qint16>(count);
    status.count = CountText(model, state, filtered);
    if (count == 0) {
        status.info.text = state.ArchiveDir;
    } else if (count == 1) {
        status.info.text = model.Row(selected.front().first).Key();
        status.size = {FormatSize(total), QCoreApplication::translate("quellbox", "Size of selected messages")};
    } else {
        status.info.text = QCoreApplication::translate("quellbox", "%n selected", nullptr, count);
        status.size = {FormatSize(total), QCoreApplication::translate("quellbox", "Total size of selected messages")};
    }
    return status;
}

} // namespace quellbox
