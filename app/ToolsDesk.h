#pragma once

#include "app/WindowJobs.h"
#include "app/WindowParts.h"
#include "dialogs/CleansingTask.h"
#include "dialogs/PickupWatch.h"

#include <QObject>

#include <atomic>
#include <memory>

namespace quellbox {

class DeliveryDesk;
class RefreshDesk;
class Transmitter;
class SetupDesk;

/// The tools: the cleansing wizard and the pickup test.
class ToolsDesk : public QObject {
    Q_OBJECT

public:
    ToolsDesk(const WindowParts& parts, RefreshDesk& refresh, SetupDesk& setup, DeliveryDesk& delivery);

    void mnuToolsCleansing_Click();

    /// Asks, and sends a message of the program's own on the way on which messages are unblocked.
    void SendPickupTest();

    /// Nobody looks any more whether the test message is taken.
    void Close();

private:
    bool ConfirmCleansing();
    void CleanseArchive();
    void jobs_CleansingEnded(const CleansingResult& result);
    void ConfirmWhenIdle();
    void ConfirmAndSend();
    bool ConfirmPickupTest(const Transmitter* transmitter);
    void TransmitTest(const std::shared_ptr<Transmitter>& transmitter);
    void WriteTest();
    void TellTest(const WindowJobs::Error& error, const QString& success);

    WindowParts parts_;
    RefreshDesk& refresh_;
    SetupDesk& setup_;
    DeliveryDesk& delivery_;
    PickupWatch watch_;
    const std::shared_ptr<std::atomic<bool>> isClosed_ = std::make_shared<std::atomic<bool>>(false);
};

} // namespace quellbox
