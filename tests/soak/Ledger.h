#pragma once

#include "app/frmMain.h"

#include <functional>
#include <set>

namespace quellbox::soak {

/// Keeps what the window has said of messages: which have been dealt with, and which could not be.
class Ledger {
public:
    /// `isThere` says whether the archive holds a message in truth. The window has to outlive this object.
    Ledger(frmMain& window, std::function<bool(const QString& name)> isThere);

    /// How many messages the user has deleted or unblocked without being told of a failure.
    int Done() const { return done_; }

    /// The names of those that were in the archive all the same when this was said.
    const std::set<QString>& NotDone() const { return notDone_; }

    /// How the last refresh ended.
    const RefreshResult& LastRefresh() const { return lastRefresh_; }

private:
    std::set<QString> Listed() const;
    void TakeDisposal(const DisposalResult& result);

    frmMain& window_;
    const std::function<bool(const QString& name)> isThere_;
    QObject context_; // of the connections
    std::set<QString> before_;
    int done_ = 0;
    std::set<QString> notDone_;
    RefreshResult lastRefresh_;
};

/// The names in failures.
std::set<QString> NamesOf(const std::vector<FileFailure>& failures);

} // namespace quellbox::soak
