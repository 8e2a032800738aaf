#include "tests/support/fault_mount/PassThrough.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quellbox {

namespace {

std::string PathIn(const Node& folder, const char* name) {
    return folder.path.empty() ? name : folder.path + '/' + name;
}

} // namespace

PassThrough::PassThrough(const std::string& folder, Traits traits, Turnstile& turnstile)
    : turnstile_(turnstile), traits_(std::move(traits)) {
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

std::string PassThrough::PathOf(const Node& node) {
    const std::lock_guard lock(mutex_);
    return node.path;
}

std::string PassThrough::NameOf(const Node& node) {
    const std::string path = PathOf(node);
    return path.substr(path.rfind('/') + 1);
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
    Node*& node = named_[PathIn(folder, name)];
    if (node != nullptr && node->device == entry.attr.st_dev && node->number == entry.attr.st_ino) {
        ::close(descriptor);
    } else {
        auto fresh =
            std::make_unique<Node>(Node{descriptor, entry.attr.st_dev, entry.attr.st_ino, 0, PathIn(folder, name), 0});
        node = fresh.get();
        nodes_[node] = std::move(fresh);
    }
    ++node->lookups;
    entry.ino = reinterpret_cast<fuse_ino_t>(node);
    entry.attr_timeout = rememberedFor;
    entry.entry_timeout = rememberedFor;
    return 0;
}

void PassThrough::Forget(fuse_ino_t ino, std::uint64_t lookups) {
    if (ino == FUSE_ROOT_ID) {
        return;
    }
    const std::lock_guard lock(mutex_);
    Node& node = At(ino);
    node.lookups -= lookups;
    if (node.lookups > 0) {
        return;
    }
    ::close(node.descriptor);
    if (const auto named = named_.find(node.path); named != named_.end() && named->second == &node) {
        named_.erase(named);
    }
    nodes_.erase(&node);
}

int PassThrough::Status(const Node& node, struct stat& status) {
    const std::string path = PathOf(node);
    const int result = path.empty() ? ::fstat(root_.descriptor, &status)
                                    : ::fstatat(root_.descriptor, path.c_str(), &status, AT_SYMLINK_NOFOLLOW);
    return result == 0 ? 0 : errno;
}

int PassThrough::Open(const Node& node, int flags) {
    return ::openat(root_.descriptor, PathOf(node).c_str(), (flags | O_CLOEXEC) & ~O_NOFOLLOW);
}

void PassThrough::CountOpen(Node& node, int more) {
    const std::lock_guard lock(mutex_);
    node.timesOpen += more;
}

bool PassThrough::RefusesOpen(const Node& folder, const char* name) {
    const std::lock_guard lock(mutex_);
    const auto named = named_.find(PathIn(folder, name));
    return traits_.refusesOpen && named != named_.end() && named->second->timesOpen > 0;
}

void PassThrough::SetRenamed(const Node& folder, const char* name, const Node& newFolder, const char* newName) {
    const std::lock_guard lock(mutex_);
    const auto named = named_.find(PathIn(folder, name));
    if (named == named_.end()) {
        return;
    }
    Node* node = named->second;
    named_.erase(named);
    node->path = PathIn(newFolder, newName);
    named_[node->path] = node;
}

void PassThrough::SetRemoved(const Node& folder, const char* name) {
    const std::lock_guard lock(mutex_);
    named_.erase(PathIn(folder, name));
}

void PassThrough::Watch(const Node& folder, const char* name) {
    WatchPath(PathIn(folder, name));
}

void PassThrough::Watch(const Node& node) {
    WatchPath(PathOf(node));
}

void PassThrough::WatchPath(const std::string& path) {
    if (traits_.ending.empty() || !path.ends_with(".EML")) {
        return;
    }
    const int file = ::openat(root_.descriptor, path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return; // it was renamed or removed by now
    }
    std::string last(traits_.ending.size(), '\0');
    const off_t size = ::lseek(file, 0, SEEK_END);
    const off_t begin = size - static_cast<off_t>(last.size());
    const bool isWhole = begin >= 0 && ::pread(file, last.data(), last.size(), begin) == size - begin;
    ::close(file);
    if (!isWhole || last != traits_.ending) {
        turnstile_.NoteIncomplete();
    }
}

} // namespace quellbox
