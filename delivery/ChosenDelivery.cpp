#include "delivery/ChosenDelivery.h"

#include "delivery/CommandTransmitter.h"
#include "delivery/ReplayTransmitter.h"
#include "delivery/SmtpTransmitter.h"
#include "delivery/TransmittingWay.h"
#include "settings/ChosenProfile.h"
#include "settings/DeliveryKeys.h"

#include <QCoreApplication>

#include <utility>

namespace quellbox {

namespace {

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

AwaitedPassword::Answer AnswerOf(const PasswordAnswer& answer) {
    if (answer.password) {
        return {*answer.password};
    }
    if (!answer.error.isEmpty()) {
        return {{}, answer.error};
    }
    return {{},
            QCoreApplication::translate("quellbox", "No password for the mail server is kept. Enter it in the "
                                                    "options, on the page \"Server\".")};
}

} // namespace

bool NeedsPassword(const AppState& state) {
    return state.Delivery == QLatin1String(DeliveryKeys::smtp) && !state.SmtpUser.isEmpty();
}

std::shared_ptr<const AwaitedPassword> AskForPassword(PasswordStore& passwords, const AppState& state,
                                                      QObject& receiver) {
    const auto awaited = std::make_shared<AwaitedPassword>();
    passwords.Read(SmtpAccount(state), receiver,
                   [awaited](const PasswordAnswer& answer) { awaited->Set(AnswerOf(answer)); });
    return awaited;
}

std::unique_ptr<Transmitter> MakeTransmitter(const AppState& state, FileSystem& files,
                                             std::shared_ptr<const AwaitedPassword> password) {
    if (state.Delivery == QLatin1String(DeliveryKeys::smtp)) {
        return std::make_unique<SmtpTransmitter>(ServerOf(state), std::move(password));
    }
    if (state.Delivery == QLatin1String(DeliveryKeys::command)) {
        return std::make_unique<CommandTransmitter>(state.DeliveryCommand);
    }
    if (state.Delivery == QLatin1String(DeliveryKeys::replay)) {
        return std::make_unique<ReplayTransmitter>(files, state.PickupDir);
    }
    return nullptr;
}

std::unique_ptr<ReleaseWay> MakeReleaseWay(const AppState& state, FileSystem& files, const Clock& clock,
                                           std::unique_ptr<Transmitter> transmitter) {
    if (!transmitter) {
        return nullptr;
    }
    return std::make_unique<TransmittingWay>(files, clock, state.ArchiveDir, ChosenProfile(state),
                                             std::move(transmitter));
}

QString TargetOf(const ReleaseWay* way, const AppState& state) {
    return way != nullptr ? way->Target() : state.PickupDir.Text();
}

} // namespace quellbox
