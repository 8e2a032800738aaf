#pragma once

#include "console/Session.h"

#include <QCoreApplication>

#include <optional>
#include <type_traits>
#include <utility>

namespace quellbox {

/// Asks the history, and waits for the answer. Throws CommandError when the history cannot be read, which was told, or
/// when the user ends the program.
template <class Ask>
auto AskHistory(Session& session, Ask ask) {
    using Answer = std::invoke_result_t<Ask, JournalDatabase&>;
    const QObject receiver;
    std::optional<Answer> answer;
    session.Await([&](const std::function<void()>& done) {
        // Who cannot read the history would wait for ever.
        QObject::connect(&session.History(), &Journal::Troubled, &receiver, done);
        session.History().AskFor(Journal::Question::ReadsAll, &receiver, std::move(ask), [&answer, done](Answer given) {
            answer = std::move(given);
            done();
        });
    });
    if (session.HistoryFailed()) {
        throw CommandError(ExitCode::SomeFailed, {});
    }
    if (!answer) {
        throw CommandError(ExitCode::Interrupted, {});
    }
    return std::move(*answer);
}

/// Tells the user where no history is kept, so that there is nothing to look up.
inline void TellIfNoHistory(Session& session) {
    if (session.State().HistoryDays <= 0) {
        session.Tell(QCoreApplication::translate("quellbox", "The settings have no history kept (HistoryDays is 0)."));
    }
}

} // namespace quellbox
