#pragma once

#include "settings/AppState.h"

#include <QDate>
#include <QObject>
#include <QPointer>
#include <QTimer>

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

/// When the list is refreshed: once soon after the start, and from the end of each refresh on at the interval of the
/// settings.
class RefreshTimer : public QObject {
    Q_OBJECT

public:
    class Hold;

    /// Takes the interval from `state`, which outlives the timer.
    explicit RefreshTimer(const AppState& state, QObject* parent = nullptr);

    /// Begins to wait for the first tick.
    void StartFirst();

    /// Begins the interval that is set now; with one of no seconds the timer stands still. A held timer begins when it
    /// is let go.
    void SetInterval();

    /// Begins the interval anew, if the timer runs. The first refresh is not put off: its interval is how it is known.
    void PutOff();

    /// Stands still until the next SetInterval().
    void Stop();

    /// Stands still for good.
    void Close();

    /// Milliseconds from tick to tick, also while the timer stands still.
    int IntervalMs() const { return tmrRefresh->interval(); }

Q_SIGNALS:
    void Tick();

private:
    void Rest();
    void GoOn();

    const AppState& state_;
    QTimer* tmrRefresh;
    int holds_ = 0;
    bool goesOn_ = false; // when nothing holds the timer any more, it keeps its interval
    bool isClosed_ = false;
};

/// Rests the timer while it lives. Of several, one inside the other, the last that goes lets the timer go.
///
/// Afterwards the timer runs whether or not it did before. One that ran keeps its interval until the next refresh, by
/// which the first tick is known, too; one that stood still gets the interval that is then set.
class RefreshTimer::Hold {
public:
    explicit Hold(RefreshTimer& timer);
    ~Hold();
    Q_DISABLE_COPY_MOVE(Hold)

private:
    QPointer<RefreshTimer> timer_;
};

} // namespace quellbox
