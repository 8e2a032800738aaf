#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace quellbox {

/// Runs events until `holds`; false when that takes too long.
template <class Condition>
bool RunUntil(Condition holds) {
    const QDeadlineTimer deadline(20'000);
    while (!holds() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    return holds();
}

} // namespace quellbox
