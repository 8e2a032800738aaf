#include "tests/support/slow_mount/PassThrough.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quellbox {

PassThrough::PassThrough(const std::string& folder, bool poor, Turnstile& turnstile)
    : turnstile_(turnstile), poor_(poor) {
    root_.descriptor = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (root_.descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), folder);
    }
}

PassThrough::~PassThrough() {
    for (const auto& [key, node] : nodes_) {
        ::close(node->descriptor);
    }
    ::close(root_.descriptor);
}

int PassThrough::Find(const Node& folder, const char* name, fuse_entry_param& entry) {
    const int descriptor = ::openat(folder.descriptor, name, O_PATH | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) {
        return errno;
    }
    if (::fstat(descriptor, &entry.attr) != 0) {
        const int error = errno;
        ::close(descriptor);
        return error;
    }
    const std::lock_guard lock(mutex_);
    std::unique_ptr<Node>& node = nodes_[{entry.attr.st_dev, entry.attr.st_ino}];
    if (node == nullptr) {
        node = std::make_unique<Node>(Node{descriptor, entry.attr.st_dev, entry.attr.st_ino, 0});
    } else {
        ::close(descriptor);
    }
    ++node->lookups;
    entry.ino = reinterpret_cast<fuse_ino_t>(node.get());
    entry.attr_timeout = rememberedFor;
    entry.entry_timeout = rememberedFor;
    return 0;
}

void PassThrough::Forget(fuse_ino_t node, std::uint64_t lookups) {
    if (node == FUSE_ROOT_ID) {
        return;
    }
    const std::lock_guard lock(mutex_);
    Node& forgotten = At(node);
    forgotten.lookups -= lookups;
    if (forgotten.lookups == 0) {
        ::close(forgotten.descriptor);
        nodes_.erase({forgotten.device, forgotten.number});
    }
}

} // namespace quellbox
