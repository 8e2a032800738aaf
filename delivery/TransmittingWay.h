#pragma once

#include "delivery/ReleaseWay.h"
#include "delivery/SendingFolder.h"
#include "delivery/Transmitter.h"
#include "mail/ServerProfile.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"

#include <atomic>
#include <memory>
#include <optional>

namespace quellbox {

/// Releases messages by handing them to a mail server. A message is taken out of the archive while it is sent, and its
/// file removed when the server has said that it has the message.
class TransmittingWay : public ReleaseWay {
public:
    /// What is lent has to outlive this object.
    TransmittingWay(FileSystem& files, const Clock& clock, const Folder& archive, const ServerProfile& profile,
                    std::unique_ptr<Transmitter> transmitter);
    ~TransmittingWay() override;

    QString Release(const QString& name) override;
    QString Target() const override { return transmitter_->Target(); }
    void Stop() override { isStopped_ = true; }

private:
    std::optional<OutgoingMessage> Load(const QString& path, const QString& name, DeliveryOutcome& outcome) const;
    DeliveryOutcome Transmit(const QString& name, QString& path);
    void RemoveDelivered(const QString& path, const QString& name);

    FileSystem& files_;
    const Clock& clock_;
    const Folder archive_;
    const ServerProfile& profile_;
    const std::unique_ptr<Transmitter> transmitter_;
    SendingFolder sending_;
    std::atomic<bool> isStopped_ = false;
};

} // namespace quellbox
