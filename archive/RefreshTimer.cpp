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

RefreshTimer::RefreshTimer(const AppState& state, QObject* parent)
    : QObject(parent), state_(state), tmrRefresh(new QTimer(this)) {
    tmrRefresh->setObjectName(QStringLiteral("tmrRefresh"));
    connect(tmrRefresh, &QTimer::timeout, this, &RefreshTimer::Tick);
}

void RefreshTimer::StartFirst() {
    tmrRefresh->start(firstTickMs);
}

void RefreshTimer::SetInterval() {
    const int interval = RefreshIntervalMs(state_.RefreshInterval);
    goesOn_ = false;
    if (interval == 0 || isClosed_) {
        tmrRefresh->stop();
        return;
    }
    tmrRefresh->setInterval(interval);
    if (holds_ == 0) {
        tmrRefresh->start();
    }
}

void RefreshTimer::PutOff() {
    if (tmrRefresh->isActive() && tmrRefresh->interval() != firstTickMs) {
        SetInterval();
    }
}

void RefreshTimer::Stop() {
    tmrRefresh->stop();
}

void RefreshTimer::Close() {
    isClosed_ = true;
    tmrRefresh->stop();
}

void RefreshTimer::Rest() {
    if (holds_++ == 0) {
        goesOn_ = tmrRefresh->isActive();
        tmrRefresh->stop();
    }
}

void RefreshTimer::GoOn() {
    if (--holds_ > 0 || isClosed_) {
        return;
    }
    if (goesOn_) {
        tmrRefresh->start();
    } else {
        SetInterval();
    }
}

RefreshTimer::Hold::Hold(RefreshTimer& timer) : timer_(&timer) {
    timer.Rest();
}

RefreshTimer::Hold::~Hold() {
    if (timer_ != nullptr) {
        timer_->GoOn();
    }
}

} // namespace quellbox
