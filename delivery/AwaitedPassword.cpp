#include "delivery/AwaitedPassword.h"

#include <QDeadlineTimer>
#include <QMutexLocker>

namespace quellbox {

namespace {

constexpr qint64 askAgainMs = 100;

} // namespace

void AwaitedPassword::Set(const Answer& answer) {
    const QMutexLocker lock(&mutex_);
    if (!answer_) {
        answer_ = answer;
    }
    answered_.wakeAll();
}

bool AwaitedPassword::HasFailed() const {
    const QMutexLocker lock(&mutex_);
    return answer_ && !answer_->trouble.isEmpty();
}

std::optional<AwaitedPassword::Answer> AwaitedPassword::Await(const std::function<bool()>& goOn) const {
    QMutexLocker lock(&mutex_);
    while (!answer_ && goOn()) {
        answered_.wait(&mutex_, QDeadlineTimer(askAgainMs));
    }
    return answer_;
}

} // namespace quellbox
