#include "tests/shares/ShareWorld.h"

#include <map>

namespace quellbox {

namespace {

std::map<ShareClient, std::unique_ptr<ShareWorld>>& Worlds() {
    static std::map<ShareClient, std::unique_ptr<ShareWorld>> worlds;
    return worlds;
}

} // namespace

ShareWorld::ShareWorld(ShareClient client, SambaServer::Access access) : server_(access) {
    if (server_.IsRunning()) {
        mount_ = ShareMount::Make(client, server_);
    }
}

ShareWorld& ShareWorld::Of(ShareClient client) {
    std::unique_ptr<ShareWorld>& world = Worlds()[client];
    if (!world) {
        world = std::make_unique<ShareWorld>(client);
    }
    return *world;
}

void ShareWorld::EndAll() {
    Worlds().clear();
}

QString ShareWorld::WhyNot() const {
    return mount_ ? mount_->WhyNot() : server_.WhyNot();
}

} // namespace quellbox
