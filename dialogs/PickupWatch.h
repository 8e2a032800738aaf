#pragma once

#include "messages/ActionRecord.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/OrderedWork.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace quellbox {

/// Looks now and then, beside the thread of this object, whether a mail server has taken the test message out of the
/// pickup directory, and writes down after how many seconds, or that nobody takes it.
class PickupWatch : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds usualPause{1000};
    static constexpr int patienceSeconds = 300; ///< servers look into their directory every few seconds

    /// What is lent has to outlive this object. It looks after each `pause`.
    PickupWatch(const FileSystem& files, WorkPool& pool, const Clock& clock,
                std::chrono::milliseconds pause = usualPause);

    /// Begins with the file at `path`, which has just been written, in the pickup directory. What is found out after
    /// `patience` seconds at most goes into `record`. An earlier watch ends.
    void Start(const QString& path, const QString& pickupDir, std::shared_ptr<ActionRecord> record,
               int patience = patienceSeconds);

    /// Ends it; nothing is written down then.
    void Stop();

    bool IsWatching() const { return record_ != nullptr; }

    /// What was found out.
    struct Outcome {
        bool isTaken = false;
        QString text; ///< the same in words
    };

Q_SIGNALS:
    void Ended(const PickupWatch::Outcome& outcome);

private:
    void Look();
    void TakeLook(bool isTaken);
    void End(const Outcome& outcome);

    const FileSystem& files_;
    WorkPool& pool_;
    const Clock& clock_;
    QTimer timer_;
    QString path_;
    QString pickupDir_;
    QDateTime since_;
    int patience_ = patienceSeconds;
    std::shared_ptr<ActionRecord> record_;
    std::optional<OrderedWork<bool>> looking_;
};

} // namespace quellbox
