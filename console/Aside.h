#pragma once

#include "console/Session.h"
#include "platform/OrderedWork.h"

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace quellbox {

/// Makes calls of the file system on a thread of the pool, and waits for them: a share that hangs must not keep the
/// user from ending the program. Throws what `call` throws, and CommandError when the user ends it. `call` may go on
/// then, so what it uses has to outlive the pool.
template <class Call>
auto CallAside(Session& session, Call call) {
    using Result = std::invoke_result_t<Call>;
    std::optional<OrderedWork<std::shared_ptr<Result>>> work;
    std::shared_ptr<Result> result;
    std::exception_ptr failure;
    session.Await(
        [&](const std::function<void()>& done) {
            work.emplace(
                session.Ports().pool, 1, [call = std::move(call)](size_t) { return std::make_shared<Result>(call()); },
                [&result](size_t, std::shared_ptr<Result> answer) { result = std::move(answer); },
                [&work, &failure, done](SeriesEnd how) {
                    failure = how == SeriesEnd::Failed ? work->Failure() : nullptr;
                    done();
                },
                oneAtATime);
            work->Start();
        },
        [&work] { work->GiveUp(); });
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (!result) {
        throw CommandError(ExitCode::Interrupted, {});
    }
    return std::move(*result);
}

} // namespace quellbox
