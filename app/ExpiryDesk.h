#pragma once

#include "app/WindowParts.h"
#include "archive/KeptExpiry.h"

#include <QObject>

namespace quellbox {

class RefreshDesk;
struct RefreshResult;

/// Has deleted messages that were kept long enough deleted for good, once a day and beside everything else. What goes
/// wrong with that is written to the log only.
class ExpiryDesk : public QObject {
    Q_OBJECT

public:
    ExpiryDesk(const WindowParts& parts, RefreshDesk& refresh);

    /// Ends it, and begins none any more.
    void Close();

    bool IsAtWork() const { return expiry_.IsRunning(); }

private:
    void refresh_DailyRefreshed(const RefreshResult& result);

    WindowParts parts_;
    KeptExpiry expiry_;
};

} // namespace quellbox
