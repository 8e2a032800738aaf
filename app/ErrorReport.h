#pragma once

#include "platform/RuntimeError.h"

#include <QString>

#include <exception>

namespace quellbox {

/// Runs a handler of an event. An error that ends it goes to `report` as a text for the user, and the program goes on.
template <class Handler, class Report>
void RunReporting(Handler handler, Report report) {
    try {
        handler();
    } catch (const RuntimeError& error) {
        report(error.Text());
    } catch (const std::exception& error) {
        report(QString::fromUtf8(error.what()));
    }
}

} // namespace quellbox
