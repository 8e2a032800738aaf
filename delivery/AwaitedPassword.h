#pragma once

#include <QMutex>
#include <QString>
#include <QWaitCondition>

#include <functional>
#include <optional>

namespace quellbox {

/// A password that is on its way, as the user may have to unlock where it is kept. Worker threads wait for it.
class AwaitedPassword {
public:
    struct Answer {
        QString password;
        QString trouble{}; ///< why there is none, in words; empty when there is one
    };

    /// The first answer counts.
    void Set(const Answer& answer);

    /// Whether the answer was that there is none.
    bool HasFailed() const;

    /// Waits, and looks now and then whether that is still wanted; empty when it is not.
    std::optional<Answer> Await(const std::function<bool()>& goOn) const;

private:
    mutable QMutex mutex_;
    mutable QWaitCondition answered_;
    std::optional<Answer> answer_;
};

} // namespace quellbox
