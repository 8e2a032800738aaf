#pragma once

#include "messages/ActionRecord.h"

#include <utility>
#include <vector>

namespace quellbox {

/// Keeps what an action that runs on one thread has told.
class NotedRecord : public ActionRecord {
public:
    void Announce(const QStringList&) override {}
    void AwaitAnnounced() override {}
    void Take(HandledMessage handled) override { taken.push_back(std::move(handled)); }

    std::vector<HandledMessage> taken;
};

} // namespace quellbox
