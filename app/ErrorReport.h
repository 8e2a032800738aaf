#pragma once

#include "platform/RuntimeError.h"

#include <QString>

#include <exception>
#include <functional>
#include <utility>

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

/// Where the errors of a window's parts end.
class ErrorReport {
public:
    using Tell = std::function<void(const QString& text)>;

    /// `tell` shows a text to the user.
    explicit ErrorReport(Tell tell) : tell_(std::move(tell)) {}

    void Show(const QString& text) const { tell_(text); }

    /// Runs a handler so that an error is told and the program goes on.
    template <class Handler>
    void Guard(Handler handler) const {
        RunReporting(handler, tell_);
    }

    /// The method of an object as a handler that is guarded; both this and the object outlive it.
    template <class Object, class Method>
    auto Guarded(Object* object, Method method) const {
        return [this, object, method](auto... arguments) { this->Guard([&] { (object->*method)(arguments...); }); };
    }

private:
    Tell tell_;
};

} // namespace quellbox
