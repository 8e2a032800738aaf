#pragma once

#include "settings/AppState.h"

#include <QDate>

namespace quellbox {

/// What a tick of the refresh timer is to do.
enum class TickAction {
    Nothing,
    FirstRefresh,       ///< full refresh, then show the first message
    FullRefresh,        ///< the day has changed
    IncrementalRefresh, ///< append what has arrived, in bold
    RefillEmptyList     ///< as IncrementalRefresh, but from the first file on
};

/// The interval that marks the first tick; every later interval is a whole number of seconds.
constexpr int firstTickMs = 500;

/// The interval of later ticks in milliseconds; 0, which means switched off, for an interval of no seconds or fewer.
int RefreshIntervalMs(qint16 refreshInterval);

/// Decides a tick and keeps `LastRefreshDay`, which compares only the day of the month. A selection, even of a single
/// row, deliberately holds the periodic refresh back.
TickAction DecideTick(int intervalMs, QDate today, int rowCount, AppState& state);

} // namespace quellbox
