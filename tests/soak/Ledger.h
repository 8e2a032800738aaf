#pragma once

#include "app/frmMain.h"

#include <set>

namespace quellbox::soak {

/// Keeps what the window has said of messages: which have been dealt with, and which could not be.
class Ledger {
public:
    /// The window has to outlive this object.
    explicit Ledger(frmMain& window);

    /// The names of the messages that the user has deleted or unblocked without being told of a failure.
    const std::set<QString>& Done() const { return done_; }

    /// Those of the messages whose rows an action took from the list, whether or not it succeeded.
    const std::set<QString>& Acted() const { return acted_; }

    /// How the last refresh ended.
    const RefreshResult& LastRefresh() const { return lastRefresh_; }

private:
    std::set<QString> Listed() const;
    void TakeDisposal(const DisposalResult& result);

    frmMain& window_;
    QObject context_; // of the connections
    std::set<QString> before_;
    std::set<QString> done_;
    std::set<QString> acted_;
    RefreshResult lastRefresh_;
};

/// The names in failures.
std::set<QString> NamesOf(const std::vector<FileFailure>& failures);

} // namespace quellbox::soak
