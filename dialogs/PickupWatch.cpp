#include "dialogs/PickupWatch.h"

#include <QCoreApplication>

#include <utility>

namespace quellbox {

namespace {

/// A folder that cannot be seen says nothing of the file.
bool IsTaken(const FileSystem& files, const QString& path, const QString& pickupDir) {
    if (!files.FolderExists(pickupDir) || files.FileExists(path)) {
        return false;
    }
    return files.FolderExists(pickupDir); // the share may have gone just before the file was looked for
}

} // namespace

PickupWatch::PickupWatch(const FileSystem& files, WorkPool& pool, const Clock& clock, std::chrono::milliseconds pause)
    : files_(files), pool_(pool), clock_(clock) {
    timer_.setSingleShot(true);
    timer_.setInterval(pause);
    timer_.callOnTimeout(this, &PickupWatch::Look);
}

void PickupWatch::Start(const QString& path, const QString& pickupDir, std::shared_ptr<ActionRecord> record,
                        int patience) {
    Stop();
    patience_ = patience;
    path_ = path;
    pickupDir_ = pickupDir;
    since_ = clock_.Now();
    record_ = std::move(record);
    timer_.start();
}

void PickupWatch::Stop() {
    timer_.stop();
    if (looking_) {
        looking_->GiveUp();
    }
    record_.reset();
}

// Where the folder does not answer, the next look begins when this one has ended.
void PickupWatch::Look() {
    looking_.emplace(
        pool_, 1, [&files = files_, path = path_, folder = pickupDir_](size_t) { return IsTaken(files, path, folder); },
        [this](size_t, bool isTaken) { TakeLook(isTaken); }, [](SeriesEnd) {}, oneAtATime);
    looking_->Start();
}

void PickupWatch::TakeLook(bool isTaken) {
    const qint64 seconds = since_.secsTo(clock_.Now());
    if (isTaken) {
        End({true, QCoreApplication::translate("quellbox",
                                               "The mail server has taken the test message after %n "
                                               "seconds.",
                                               nullptr, static_cast<int>(seconds))});
    } else if (seconds >= patience_) {
        End({false, QCoreApplication::translate("quellbox",
                                                "Nobody has taken the test message for %n seconds: no mail server "
                                                "looks into this directory, or it refuses the message.",
                                                nullptr, patience_)});
    } else {
        timer_.start();
    }
}

void PickupWatch::End(const Outcome& outcome) {
    const std::shared_ptr<ActionRecord> record = std::exchange(record_, nullptr);
    const MessageRow message(QStringLiteral("quellbox.eml"), -1, 0, {});
    if (outcome.isTaken) {
        record->Take({message, std::nullopt, 0, outcome.text, true});
    } else {
        record->Take({message, FileFailure(path_, outcome.text), 0, {}, true});
    }
    Q_EMIT Ended(outcome);
}

} // namespace quellbox
