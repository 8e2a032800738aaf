#pragma once

#include "console/Session.h"

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
        session.History().AskFor(Journal::Question::ReadsAll, &receiver, std::move(ask),
                                 [&answer, done](Answer given) {
                                     answer = std::move(given);
                                     done();
                                 });
    });
    if (!answer) {
        throw CommandError(ExitCode::Interrupted, {});
    }
    if (session.HistoryFailed()) {
        throw CommandError(ExitCode::SomeFailed, {});
    }
    return std::move(*answer);
}

} // namespace quellbox
