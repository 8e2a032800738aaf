#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace quellbox {

/// Puts questions to the system, such as about drives, one at a time on another thread, and returns the answers in the
/// order of the questions. A question that is not answered within `patience` holds up none of the others: its answer
/// stays empty, and the thread that waits for it is left to itself. So a question owns what it uses, and does not
/// throw.
template <class Answer>
std::vector<std::optional<Answer>> AskInTurn(std::vector<std::function<Answer()>> questions,
                                             std::chrono::milliseconds patience) {
    struct Round {
        std::mutex mutex;
        std::condition_variable answered;
        std::vector<std::function<Answer()>> questions;
        std::vector<std::optional<Answer>> answers;
        size_t next = 0;  // question that nobody has put yet
        size_t count = 0; // of the answers
    };
    const auto round = std::make_shared<Round>();
    round->questions = std::move(questions);
    round->answers.resize(round->questions.size());
    const auto ask = [round] {
        std::unique_lock lock(round->mutex);
        while (round->next < round->questions.size()) {
            const size_t index = round->next++;
            lock.unlock();
            Answer answer = round->questions[index]();
            lock.lock();
            round->answers[index] = std::move(answer);
            ++round->count;
            round->answered.notify_one();
        }
    };
    std::unique_lock lock(round->mutex);
    while (round->next < round->questions.size()) {
        // No thread of a pool, because a pool does not end before a thread that hangs.
        std::thread(ask).detach();
        size_t count = 0;
        do {
            count = round->count;
        } while (count < round->questions.size() &&
                 round->answered.wait_for(lock, patience, [&] { return round->count > count; }));
    }
    return round->answers;
}

} // namespace quellbox
