#include "app/DeliveryDesk.h"

#include "app/WindowJobs.h"
#include "archive/RefreshTask.h"
#include "delivery/CommandTransmitter.h"
#include "delivery/ReplayTransmitter.h"
#include "delivery/SmtpTransmitter.h"
#include "delivery/TransmittingWay.h"
#include "messages/FailureList.h"
#include "platform/PasswordStore.h"
#include "platform/RuntimeError.h"
#include "settings/ChosenProfile.h"
#include "settings/DeliveryKeys.h"

#include <utility>

namespace quellbox {

namespace {

// No server takes that long for one message, whatever it does with it.
constexpr int secondsOfSending = 3600;

SmtpSecurity SecurityOf(const QString& key) {
    if (key == QLatin1String(SecurityKeys::tls)) {
        return SmtpSecurity::Tls;
    }
    return key == QLatin1String(SecurityKeys::none) ? SmtpSecurity::None : SmtpSecurity::StartTls;
}

SmtpServer ServerOf(const AppState& state) {
    SmtpServer server;
    server.host = state.SmtpHost;
    server.port = static_cast<quint16>(state.SmtpPort);
    server.security = SecurityOf(state.SmtpSecurity);
    server.user = state.SmtpUser;
    return server;
}

/// Has an object deleted beside the interface thread: what it holds may have to take its leave of a server.
template <class Object>
std::shared_ptr<Object> DeletedAside(std::unique_ptr<Object> object, WorkPool& pool) {
    return {object.release(), [&pool](Object* gone) { pool.Start(WorkPool::Kind::Single, [gone] { delete gone; }); }};
}

/// What cannot be brought back now is tried again the next day.
QStringList TryToReturn(FileSystem& files, const Folder& archive, const QDateTime& before) {
    try {
        const LeftBehind left = ReturnLeftBehind(files, archive, before);
        LogFailures({left.errors.begin(), left.errors.end()});
        return left.returned;
    } catch (const FileError& error) {
        LogFailures({FileFailure(error)});
        return {};
    }
}

} // namespace

DeliveryDesk::DeliveryDesk(const WindowParts& parts) : parts_(parts) {}

std::shared_ptr<ReleaseWay> DeliveryDesk::NewWay(Starter starter) {
    std::unique_ptr<Transmitter> transmitter = MakeTransmitter(starter);
    if (!transmitter) {
        return nullptr;
    }
    const MainPorts& ports = parts_.ports;
    std::unique_ptr<ReleaseWay> way = std::make_unique<TransmittingWay>(
        ports.files, ports.clock, parts_.state.ArchiveDir, ChosenProfile(parts_.state), std::move(transmitter));
    std::shared_ptr<ReleaseWay> shared = DeletedAside(std::move(way), ports.pool);
    std::erase_if(ways_, [](const std::weak_ptr<ReleaseWay>& earlier) { return earlier.expired(); });
    ways_.push_back(shared);
    return shared;
}

std::shared_ptr<Transmitter> DeliveryDesk::NewTransmitter() {
    std::unique_ptr<Transmitter> transmitter = MakeTransmitter(Starter::User);
    return transmitter ? DeletedAside(std::move(transmitter), parts_.ports.pool) : nullptr;
}

std::unique_ptr<Transmitter> DeliveryDesk::MakeTransmitter(Starter starter) {
    const AppState& state = parts_.state;
    if (state.Delivery == QLatin1String(DeliveryKeys::smtp)) {
        return std::make_unique<SmtpTransmitter>(ServerOf(state), PasswordFor(starter));
    }
    if (state.Delivery == QLatin1String(DeliveryKeys::command)) {
        return std::make_unique<CommandTransmitter>(state.DeliveryCommand);
    }
    if (state.Delivery == QLatin1String(DeliveryKeys::replay)) {
        return std::make_unique<ReplayTransmitter>(parts_.ports.files, state.PickupDir);
    }
    return nullptr;
}

/// Null where the server wants none.
std::shared_ptr<const AwaitedPassword> DeliveryDesk::PasswordFor(Starter starter) {
    if (parts_.state.SmtpUser.isEmpty()) {
        return nullptr;
    }
    const QString account = SmtpAccount(parts_.state);
    const bool isKnown = password_ && account_ == account;
    if (!isKnown || (starter == Starter::User && password_->HasFailed())) {
        account_ = account;
        password_ = AskForPassword();
    }
    return password_;
}

std::shared_ptr<const AwaitedPassword> DeliveryDesk::AskForPassword() {
    const auto awaited = std::make_shared<AwaitedPassword>();
    parts_.ports.passwords.Read(SmtpAccount(parts_.state), *this, [awaited](const PasswordAnswer& answer) {
        if (answer.password) {
            awaited->Set({*answer.password});
        } else if (answer.error.isEmpty()) {
            awaited->Set({{},
                          tr("No password for the mail server is kept. Enter it in the options, on the page "
                             "\"Server\".")});
        } else {
            awaited->Set({{}, answer.error});
        }
    });
    return awaited;
}

QString DeliveryDesk::TargetOf(const std::shared_ptr<ReleaseWay>& way) const {
    return way ? way->Target() : parts_.state.PickupDir.Text();
}

void DeliveryDesk::BringBackLeftBehind(const RefreshResult& result) {
    if (!result.mayHoldSent || parts_.jobs.IsClosed()) {
        return;
    }
    const Folder archive = parts_.state.ArchiveDir;
    const QDateTime before = parts_.ports.clock.Now().addSecs(-secondsOfSending);
    bringing_.emplace(
        parts_.ports.pool, 1,
        [&files = parts_.ports.files, archive, before](size_t) { return TryToReturn(files, archive, before); },
        [this, archive](size_t, const QStringList& names) { TellLeftBehind(archive, names); }, [](SeriesEnd) {},
        oneAtATime);
    bringing_->Start();
}

void DeliveryDesk::TellLeftBehind(const Folder& archive, const QStringList& names) {
    std::vector<FileFailure> failures;
    for (const QString& name : names) {
        failures.emplace_back(FileError(archive.PathOf(name),
                                        tr("The program ended while the message was being sent. It may have been "
                                           "delivered."),
                                        FileProblem::Uncertain));
    }
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
