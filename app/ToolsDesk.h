#pragma once

#include "app/WindowParts.h"
#include "dialogs/CleansingTask.h"

#include <QObject>

namespace quellbox {

class RefreshDesk;
class SetupDesk;

/// The tools: the cleansing wizard and the pickup test.
class ToolsDesk : public QObject {
    Q_OBJECT

public:
    ToolsDesk(const WindowParts& parts, RefreshDesk& refresh, SetupDesk& setup);

    void mnuToolsCleansing_Click();

    /// Asks, and sends a message of the program's own by the pickup directory.
    void SendPickupTest();

private:
    bool ConfirmCleansing();
    void CleanseArchive();
    void jobs_CleansingEnded(const CleansingResult& result);
    void ConfirmWhenIdle();
    void ConfirmAndSend();
    bool ConfirmPickupTest();

    WindowParts parts_;
    RefreshDesk& refresh_;
    SetupDesk& setup_;
};

} // namespace quellbox
