#pragma once

#include "tests/support/SambaServer.h"
#include "tests/support/ShareMount.h"

#include <memory>

namespace quellbox {

/// A server and a client with its shares, which the tests of one client have in common: to start them takes longer than
/// most tests.
class ShareWorld {
public:
    explicit ShareWorld(ShareClient client, SambaServer::Access access = SambaServer::Access::Guest);

    /// The world of a client, which is made when it is first asked for.
    static ShareWorld& Of(ShareClient client);

    /// Ends all of them, while the program still has what that needs.
    static void EndAll();

    /// Why there are no shares; empty when there are.
    QString WhyNot() const;

    /// Ends the client, so that every call that waits for it fails. Only WhyNot() may be called afterwards.
    void EndClient() { mount_.reset(); }

    SambaServer& Server() { return server_; }
    ShareMount& Mount() { return *mount_; }

private:
    SambaServer server_;
    std::unique_ptr<ShareMount> mount_;
};

} // namespace quellbox
