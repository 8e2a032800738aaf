#include "app/DeliveryDesk.h"

#include "app/WindowJobs.h"
#include "archive/RefreshTask.h"
#include "delivery/ChosenDelivery.h"
#include "messages/FailureList.h"
#include "messages/InterruptedSending.h"

#include <utility>

namespace quellbox {

namespace {

/// Has an object deleted beside the interface thread: what it holds may have to take its leave of a server.
template <class Object>
std::shared_ptr<Object> DeletedAside(std::unique_ptr<Object> object, WorkPool& pool) {
    return {object.release(), [&pool](Object* gone) { pool.Start(WorkPool::Kind::Single, [gone] { delete gone; }); }};
}

} // namespace

DeliveryDesk::DeliveryDesk(const WindowParts& parts) : parts_(parts) {}

std::shared_ptr<ReleaseWay> DeliveryDesk::NewWay(Starter starter) {
    const MainPorts& ports = parts_.ports;
    std::unique_ptr<ReleaseWay> way =
        MakeReleaseWay(parts_.state, ports.files, ports.clock, NewTransmitterFor(starter));
    if (!way) {
        return nullptr;
    }
    std::shared_ptr<ReleaseWay> shared = DeletedAside(std::move(way), ports.pool);
    std::erase_if(ways_, [](const std::weak_ptr<ReleaseWay>& earlier) { return earlier.expired(); });
    ways_.push_back(shared);
    return shared;
}

std::shared_ptr<Transmitter> DeliveryDesk::NewTransmitter() {
    std::unique_ptr<Transmitter> transmitter = NewTransmitterFor(Starter::User);
    return transmitter ? DeletedAside(std::move(transmitter), parts_.ports.pool) : nullptr;
}

std::unique_ptr<Transmitter> DeliveryDesk::NewTransmitterFor(Starter starter) {
    return MakeTransmitter(parts_.state, parts_.ports.files, PasswordFor(starter));
}

/// Null where none is needed.
std::shared_ptr<const AwaitedPassword> DeliveryDesk::PasswordFor(Starter starter) {
    if (!NeedsPassword(parts_.state)) {
        return nullptr;
    }
    const QString account = SmtpAccount(parts_.state);
    const bool isKnown = password_ && account_ == account;
    if (!isKnown || (starter == Starter::User && password_->HasFailed())) {
        account_ = account;
        password_ = AskForPassword(parts_.ports.passwords, parts_.state, *this);
    }
    return password_;
}

void DeliveryDesk::BringBackLeftBehind(const RefreshResult& result) {
    if (!result.mayHoldSent || parts_.jobs.IsClosed()) {
        return;
    }
    const Folder archive = parts_.state.ArchiveDir;
    const QDateTime now = parts_.ports.clock.Now();
    bringing_.emplace(
        parts_.ports.pool, 1,
        [&files = parts_.ports.files, archive, now](size_t) { return BringBackInterrupted(files, archive, now); },
        [this](size_t, const std::vector<FileFailure>& failures) { TellInterrupted(failures); }, [](SeriesEnd) {},
        oneAtATime);
    bringing_->Start();
}

void DeliveryDesk::TellInterrupted(const std::vector<FileFailure>& failures) {
    if (!failures.empty()) {
        parts_.failures.TakeAction(failures, parts_.ports.clock.Now());
    }
}

void DeliveryDesk::Close() {
    if (bringing_) {
        bringing_->GiveUp();
    }
    for (const std::weak_ptr<ReleaseWay>& way : ways_) {
        if (const std::shared_ptr<ReleaseWay> left = way.lock()) {
            left->Stop();
        }
    }
}

} // namespace quellbox
