#pragma once

#include "tests/support/slow_mount/Turnstile.h"

#define FUSE_USE_VERSION 312
#include <fuse3/fuse_lowlevel.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace quellbox {

/// A file or folder that the kernel knows, held open without any right to its contents.
struct Node {
    int descriptor = -1;
    dev_t device = 0;
    ino_t number = 0;
    std::uint64_t lookups = 0; ///< how often the kernel was told of it and has not forgotten it
};

/// A file system that passes every call on to a real folder, once the turnstile lets it. What it tells the kernel of
/// names and files, also that there is no such name, the kernel remembers for a second, as it does for a share.
class PassThrough {
public:
    static constexpr double rememberedFor = 1.0; ///< seconds

    /// A `poor` one knows neither hard links nor a rename that does not replace. Throws std::system_error when `folder`
    /// cannot be opened.
    PassThrough(const std::string& folder, bool poor, Turnstile& turnstile);
    ~PassThrough();
    PassThrough(const PassThrough&) = delete;
    PassThrough& operator=(const PassThrough&) = delete;

    Turnstile& Calls() { return turnstile_; }
    bool IsPoor() const { return poor_; }
    Node& At(fuse_ino_t node) { return node == FUSE_ROOT_ID ? root_ : *reinterpret_cast<Node*>(node); }

    /// Looks a name up and counts that for the kernel. Returns 0 or an errno value.
    int Find(const Node& folder, const char* name, fuse_entry_param& entry);

    void Forget(fuse_ino_t node, std::uint64_t lookups);

private:
    Turnstile& turnstile_;
    bool poor_;
    Node root_;
    std::mutex mutex_;
    std::map<std::pair<dev_t, ino_t>, std::unique_ptr<Node>> nodes_;
};

/// The functions for a session whose user data is a PassThrough.
fuse_lowlevel_ops PassThroughOperations();

} // namespace quellbox
