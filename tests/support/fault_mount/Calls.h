#pragma once

#include <array>
#include <string_view>

namespace quellbox {

/// The calls that a file system gets from the kernel. What the kernel remembers it does not ask for.
enum class Call {
    Lookup, ///< of a name in a folder
    GetAttr,
    SetAttr,
    ReadLink,
    MakeFolder,
    RemoveFolder,
    SymLink,
    Link,
    Unlink,
    Rename,
    Create, ///< and open
    Open,
    Read,
    Write,
    Flush, ///< each close
    Release,
    Sync,
    OpenFolder,
    ReadFolder,
    ReleaseFolder,
    SyncFolder,
    StatFs,
    Count
};

/// What rules and counts call them.
constexpr std::array<std::string_view, static_cast<size_t>(Call::Count)> callNames{
    "lookup", "getattr", "setattr", "readlink",   "mkdir",    "rmdir", "symlink", "link",
    "unlink", "rename",  "create",  "open",       "read",     "write", "flush",   "release",
    "fsync",  "opendir", "readdir", "releasedir", "fsyncdir", "statfs"};

constexpr std::string_view NameOf(Call call) {
    return callNames[static_cast<size_t>(call)];
}

} // namespace quellbox
