#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <chrono>

namespace quellbox {

/// Runs events until `holds`; false when that takes longer than `patience`. Between events the thread sleeps, so that
/// the servers that a test waits for get the processor.
template <class Condition>
bool RunUntil(Condition holds, std::chrono::milliseconds patience = std::chrono::seconds(20)) {
    const QDeadlineTimer deadline(patience);
    QTimer look;
    look.start(std::chrono::milliseconds(2));
    while (!holds() && !deadline.hasExpired()) {
        // The overload with a time does not wait, whatever its flags say.
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return holds();
}

} // namespace quellbox
