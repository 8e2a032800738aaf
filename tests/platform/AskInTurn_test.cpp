#include "platform/AskInTurn.h"

#include <QSemaphore>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

namespace quellbox {

namespace {

using namespace std::chrono_literals;

using Questions = std::vector<std::function<int()>>;
using Answers = std::vector<std::optional<int>>;

constexpr std::chrono::milliseconds longest = 10s;

TEST(AskInTurn, GivesTheAnswersInTheOrderOfTheQuestions) {
    EXPECT_EQ(AskInTurn<int>({}, longest), Answers());
    Questions questions;
    Answers expected;
    for (int number = 0; number < 50; ++number) {
        questions.emplace_back([number] { return number; });
        expected.emplace_back(number);
    }
    EXPECT_EQ(AskInTurn<int>(questions, longest), expected);
}

TEST(AskInTurn, PutsOneQuestionAtATime) {
    const auto asking = std::make_shared<std::atomic<int>>(0);
    const auto most = std::make_shared<std::atomic<int>>(0);
    const auto question = [asking, most] {
        *most = std::max(most->load(), ++*asking);
        std::this_thread::sleep_for(1ms);
        return --*asking;
    };
    AskInTurn<int>(Questions(10, question), longest);
    EXPECT_EQ(*most, 1);
}

TEST(AskInTurn, AQuestionWithoutAnAnswerHoldsUpNoOther) {
    const auto never = std::make_shared<QSemaphore>();
    const auto gone = std::make_shared<QSemaphore>();
    const auto hangs = [never, gone] {
        never->acquire();
        gone->release();
        return 0;
    };
    EXPECT_EQ(AskInTurn<int>({hangs, [] { return 1; }, hangs, [] { return 2; }, hangs}, 20ms),
              Answers({std::nullopt, 1, std::nullopt, 2, std::nullopt}));
    never->release(3);
    EXPECT_TRUE(gone->tryAcquire(3, 10'000));
}

} // namespace

} // namespace quellbox
