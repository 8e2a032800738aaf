#pragma once

#include "tests/support/fault_mount/Turnstile.h"

#define FUSE_USE_VERSION 312
#include <fuse3/fuse_lowlevel.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace quellbox {

/// What a share is like.
struct Traits {
    bool links = true;        ///< knows hard links
    bool noReplace = true;    ///< knows a rename that does not replace
    bool refusesOpen = false; ///< refuses to rename, replace or remove a file that is open
    bool separate = false;    ///< its folders are shares of their own, between which nothing is renamed or linked
    std::string ending;       ///< of a whole message; empty when nobody looks at that
};

/// A name that the kernel knows. Its file or folder is held open without any right to its contents.
struct Node {
    int descriptor = -1;
    dev_t device = 0;
    ino_t number = 0;
    std::uint64_t lookups = 0; ///< how often the kernel was told of it and has not forgotten it
    std::string path;          ///< below the folder, as far as the kernel was told
    int timesOpen = 0;
};

/// A file system that passes every call on to a real folder, once the turnstile lets it. What it tells the kernel of
/// names and files, also that there is no such name, the kernel remembers for a second, as it does for a share. And as
/// on a share, a name is all that stands for a file: one that has got another name meanwhile, without the kernel having
/// been told, is not found by the old one.
class PassThrough {
public:
    static constexpr double rememberedFor = 1.0; ///< seconds

    /// Throws std::system_error when `folder` cannot be opened.
    PassThrough(const std::string& folder, Traits traits, Turnstile& turnstile);
    ~PassThrough();
    PassThrough(const PassThrough&) = delete;
    PassThrough& operator=(const PassThrough&) = delete;

    Turnstile& Calls() { return turnstile_; }
    const Traits& Kind() const { return traits_; }
    Node& At(fuse_ino_t node) { return node == FUSE_ROOT_ID ? root_ : *reinterpret_cast<Node*>(node); }

    /// The name of a node without its folder, as the kernel was told last.
    std::string NameOf(const Node& node);

    /// Looks a name up and counts that for the kernel. Returns 0 or an errno value.
    int Find(const Node& folder, const char* name, fuse_entry_param& entry);

    void Forget(fuse_ino_t node, std::uint64_t lookups);

    /// Returns 0 or an errno value.
    int Status(const Node& node, struct stat& status);

    /// Opens a node by its name. Returns a number, or -1 and errno.
    int Open(const Node& node, int flags);

    /// So many more have the file open.
    void CountOpen(Node& node, int more);

    /// Whether a name stands for a file that is open, and that is refused.
    bool RefusesOpen(const Node& folder, const char* name);

    /// The kernel is told that a file has got another name, or is gone.
    void SetRenamed(const Node& folder, const char* name, const Node& newFolder, const char* newName);
    void SetRemoved(const Node& folder, const char* name);

    /// Looks whether what has the name of a message is a whole one.
    void Watch(const Node& folder, const char* name);
    void Watch(const Node& node);

private:
    std::string PathOf(const Node& node);
    void WatchPath(const std::string& path);

    Turnstile& turnstile_;
    const Traits traits_;
    Node root_;
    std::mutex mutex_; // of everything below, and of what changes in nodes
    std::map<const Node*, std::unique_ptr<Node>> nodes_;
    std::map<std::string, Node*> named_; // by path
};

/// The functions for a session whose user data is a PassThrough.
fuse_lowlevel_ops PassThroughOperations();

} // namespace quellbox
