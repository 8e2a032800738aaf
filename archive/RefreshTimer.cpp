#include "archive/RefreshTimer.h"

namespace quellbox {

int RefreshIntervalMs(qint16 refreshInterval) {
    return refreshInterval > 0 ? refreshInterval * 1000 : 0;
}

TickAction DecideTick(int intervalMs, QDate today, int rowCount, AppState& state) {
    const auto day = static_cast<qint16>(today.day());
    if (intervalMs < 1000) {
        state.LastRefreshDay = day;
        return TickAction::FirstRefresh;
    }
    if (day != state.LastRefreshDay) {
        state.LastRefreshDay = day;
        return TickAction::FullRefresh;
    }
    if (state.AutoRefresh != 1) {
        return TickAction::Nothing;
    }
    if (rowCount == 0) {
        return TickAction::RefillEmptyList;
    }
    return state.SelectedCount != 0 ? TickAction::Nothing : TickAction::IncrementalRefresh;
}

} // namespace quellbox
