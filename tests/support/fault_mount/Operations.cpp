#include "tests/support/fault_mount/Connection.h"
#include "tests/support/fault_mount/PassThrough.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <optional>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace quellbox {

namespace {

PassThrough& Self(fuse_req_t request) {
    return *static_cast<PassThrough*>(fuse_req_userdata(request));
}

/// A path of the node that opens it even after it was renamed.
std::string PathOf(const Node& node) {
    return "/proc/self/fd/" + std::to_string(node.descriptor);
}

int ErrorOf(int result) {
    return result < 0 ? errno : 0;
}

/// Carries a call out, when the turnstile lets it. `work` gets the file system and the node, answers the call itself
/// when all is well and returns 0, or returns an errno value.
template <class Work>
void PassWith(fuse_req_t request, const Fate& fate, Node& at, Work work) {
    std::optional<LostAnswer> lost;
    if (fate.fault == Fault::Lose || fate.fault == Fault::DieAfter) {
        lost.emplace(fate.error);
    }
    const int error = fate.fault == Fault::Fail ? fate.error : work(Self(request), at);
    if (error != 0) {
        fuse_reply_err(request, error);
    }
}

/// The same for a call that concerns what the kernel knows as `node`.
template <class Work>
void Pass(fuse_req_t request, Call call, fuse_ino_t node, Work work) {
    PassThrough& self = Self(request);
    Node& at = self.At(node);
    PassWith(request, self.Calls().Enter(call, self.NameOf(at)), at, work);
}

/// The same for a call that names something in the folder `parent`.
template <class Work>
void PassName(fuse_req_t request, Call call, fuse_ino_t parent, const char* name, Work work) {
    PassThrough& self = Self(request);
    PassWith(request, self.Calls().Enter(call, name), self.At(parent), work);
}

/// An answer without contents.
int Answer(fuse_req_t request, int error) {
    if (error == 0) {
        fuse_reply_err(request, 0);
    }
    return error;
}

int Done(fuse_req_t request, int result) {
    return Answer(request, ErrorOf(result));
}

int ReplyEntry(fuse_req_t request, PassThrough& self, const Node& folder, const char* name) {
    fuse_entry_param entry{};
    const int error = self.Find(folder, name, entry);
    if (error == 0) {
        fuse_reply_entry(request, &entry);
    }
    return error;
}

void Lookup(fuse_req_t request, fuse_ino_t parent, const char* name) {
    PassName(request, Call::Lookup, parent, name, [=](PassThrough& self, const Node& folder) {
        const int error = ReplyEntry(request, self, folder, name);
        if (error != ENOENT) {
            return error;
        }
        fuse_entry_param missing{}; // without a node: the kernel remembers that there is none
        missing.entry_timeout = PassThrough::rememberedFor;
        fuse_reply_entry(request, &missing);
        return 0;
    });
}

void Forget(fuse_req_t request, fuse_ino_t node, std::uint64_t lookups) {
    Self(request).Forget(node, lookups);
    fuse_reply_none(request);
}

void ForgetMulti(fuse_req_t request, size_t count, fuse_forget_data* forgets) {
    for (size_t index = 0; index < count; ++index) {
        Self(request).Forget(forgets[index].ino, forgets[index].nlookup);
    }
    fuse_reply_none(request);
}

int ReplyAttributes(fuse_req_t request, PassThrough& self, const Node& node) {
    struct stat status {};
    const int error = self.Status(node, status);
    if (error == 0) {
        fuse_reply_attr(request, &status, PassThrough::rememberedFor);
    }
    return error;
}

int FileOf(const fuse_file_info* info) {
    return static_cast<int>(info->fh);
}

void GetAttributes(fuse_req_t request, fuse_ino_t ino, fuse_file_info*) {
    Pass(request, Call::GetAttr, ino,
         [=](PassThrough& self, const Node& node) { return ReplyAttributes(request, self, node); });
}

timespec NewTime(int wanted, int setFlag, int nowFlag, timespec given) {
    if ((wanted & nowFlag) != 0) {
        return {0, UTIME_NOW};
    }
    return (wanted & setFlag) != 0 ? given : timespec{0, UTIME_OMIT};
}

int ChangeAttributes(const Node& node, const struct stat& given, int wanted) {
    const std::string path = PathOf(node);
    const uid_t owner = (wanted & FUSE_SET_ATTR_UID) != 0 ? given.st_uid : static_cast<uid_t>(-1);
    const gid_t group = (wanted & FUSE_SET_ATTR_GID) != 0 ? given.st_gid : static_cast<gid_t>(-1);
    const std::array<timespec, 2> times{NewTime(wanted, FUSE_SET_ATTR_ATIME, FUSE_SET_ATTR_ATIME_NOW, given.st_atim),
                                        NewTime(wanted, FUSE_SET_ATTR_MTIME, FUSE_SET_ATTR_MTIME_NOW, given.st_mtim)};
    int error = 0;
    if ((wanted & FUSE_SET_ATTR_MODE) != 0) {
        error = ErrorOf(::chmod(path.c_str(), given.st_mode));
    }
    if (error == 0 && (wanted & (FUSE_SET_ATTR_UID | FUSE_SET_ATTR_GID)) != 0) {
        error = ErrorOf(::fchownat(node.descriptor, "", owner, group, AT_EMPTY_PATH | AT_SYMLINK_NOFOLLOW));
    }
    if (error == 0 && (wanted & FUSE_SET_ATTR_SIZE) != 0) {
        error = ErrorOf(::truncate(path.c_str(), given.st_size));
    }
    return error != 0 ? error : ErrorOf(::utimensat(AT_FDCWD, path.c_str(), times.data(), 0));
}

void SetAttributes(fuse_req_t request, fuse_ino_t ino, struct stat* given, int wanted, fuse_file_info*) {
    Pass(request, Call::SetAttr, ino, [=](PassThrough& self, const Node& node) {
        const int error = ChangeAttributes(node, *given, wanted);
        if ((wanted & FUSE_SET_ATTR_SIZE) != 0) {
            self.Watch(node);
        }
        return error != 0 ? error : ReplyAttributes(request, self, node);
    });
}

void ReadLink(fuse_req_t request, fuse_ino_t ino) {
    Pass(request, Call::ReadLink, ino, [=](PassThrough&, const Node& node) {
        std::array<char, PATH_MAX + 1> target{};
        const int error = ErrorOf(static_cast<int>(::readlinkat(node.descriptor, "", target.data(), PATH_MAX)));
        if (error == 0) {
            fuse_reply_readlink(request, target.data());
        }
        return error;
    });
}

void MakeFolder(fuse_req_t request, fuse_ino_t parent, const char* name, mode_t mode) {
    PassName(request, Call::MakeFolder, parent, name, [=](PassThrough& self, const Node& folder) {
        const int error = ErrorOf(::mkdirat(folder.descriptor, name, mode));
        return error != 0 ? error : ReplyEntry(request, self, folder, name);
    });
}

void MakeSymLink(fuse_req_t request, const char* target, fuse_ino_t parent, const char* name) {
    PassName(request, Call::SymLink, parent, name, [=](PassThrough& self, const Node& folder) {
        const int error = ErrorOf(::symlinkat(target, folder.descriptor, name));
        return error != 0 ? error : ReplyEntry(request, self, folder, name);
    });
}

/// Whether nothing is renamed or linked between two folders.
bool AreSeparate(const PassThrough& self, const Node& one, const Node& other) {
    return self.Kind().separate && &one != &other;
}

void MakeLink(fuse_req_t request, fuse_ino_t ino, fuse_ino_t newParent, const char* newName) {
    PassName(request, Call::Link, newParent, newName, [=](PassThrough& self, const Node& folder) {
        if (!self.Kind().links) {
            return EPERM;
        }
        const std::string path = PathOf(self.At(ino));
        const int error = ErrorOf(::linkat(AT_FDCWD, path.c_str(), folder.descriptor, newName, AT_SYMLINK_FOLLOW));
        self.Watch(folder, newName);
        return error != 0 ? error : ReplyEntry(request, self, folder, newName);
    });
}

void Unlink(fuse_req_t request, fuse_ino_t parent, const char* name) {
    PassName(request, Call::Unlink, parent, name, [=](PassThrough& self, const Node& folder) {
        if (self.RefusesOpen(folder, name)) {
            return EBUSY;
        }
        const int error = ErrorOf(::unlinkat(folder.descriptor, name, 0));
        if (error == 0 && !LostAnswer::IsLost()) {
            self.SetRemoved(folder, name);
        }
        return Answer(request, error);
    });
}

void RemoveFolder(fuse_req_t request, fuse_ino_t parent, const char* name) {
    PassName(request, Call::RemoveFolder, parent, name, [=](PassThrough&, const Node& folder) {
        return Done(request, ::unlinkat(folder.descriptor, name, AT_REMOVEDIR));
    });
}

void Rename(fuse_req_t request, fuse_ino_t parent, const char* name, fuse_ino_t newParent, const char* newName,
            unsigned flags) {
    PassName(request, Call::Rename, parent, name, [=](PassThrough& self, const Node& folder) {
        const Node& newFolder = self.At(newParent);
        if (!self.Kind().noReplace && flags != 0) {
            return EINVAL;
        }
        if (AreSeparate(self, folder, newFolder)) {
            return EXDEV;
        }
        if (self.RefusesOpen(folder, name) || self.RefusesOpen(newFolder, newName)) {
            return EBUSY;
        }
        const int error = ErrorOf(::renameat2(folder.descriptor, name, newFolder.descriptor, newName, flags));
        self.Watch(newFolder, newName);
        if (error == 0 && !LostAnswer::IsLost()) {
            self.SetRenamed(folder, name, newFolder, newName);
        }
        return Answer(request, error);
    });
}

/// The file is open until the kernel releases it, unless it is not told.
void KeepOpen(PassThrough& self, Node& node, int file, fuse_file_info* info) {
    if (LostAnswer::IsLost()) {
        ::close(file);
        return;
    }
    self.CountOpen(node, 1);
    info->fh = static_cast<std::uint64_t>(file);
}

void Create(fuse_req_t request, fuse_ino_t parent, const char* name, mode_t mode, fuse_file_info* info) {
    PassName(request, Call::Create, parent, name, [=](PassThrough& self, const Node& folder) {
        const int file = ::openat(folder.descriptor, name, (info->flags | O_CREAT | O_CLOEXEC) & ~O_NOFOLLOW, mode);
        if (file < 0) {
            return errno;
        }
        fuse_entry_param entry{};
        const int error = self.Find(folder, name, entry);
        if (error != 0) {
            ::close(file);
            return error;
        }
        self.Watch(folder, name);
        KeepOpen(self, self.At(entry.ino), file, info);
        fuse_reply_create(request, &entry, info);
        return 0;
    });
}

void Open(fuse_req_t request, fuse_ino_t ino, fuse_file_info* info) {
    Pass(request, Call::Open, ino, [=](PassThrough& self, Node& node) {
        const int file = self.Open(node, info->flags);
        if (file < 0) {
            return errno;
        }
        KeepOpen(self, node, file, info);
        fuse_reply_open(request, info);
        return 0;
    });
}

void Read(fuse_req_t request, fuse_ino_t ino, size_t size, off_t offset, fuse_file_info* info) {
    Pass(request, Call::Read, ino, [=](PassThrough&, const Node&) {
        std::vector<char> bytes(size);
        const ssize_t count = ::pread(FileOf(info), bytes.data(), size, offset);
        if (count < 0) {
            return errno;
        }
        fuse_reply_buf(request, bytes.data(), static_cast<size_t>(count));
        return 0;
    });
}

/// How much of a write is carried out.
size_t RoomFor(const Fate& fate, size_t size) {
    switch (fate.fault) {
    case Fault::Cut:
        return size / 2;
    case Fault::Fill:
        return std::min(fate.room, size);
    default:
        return size;
    }
}

void Write(fuse_req_t request, fuse_ino_t ino, const char* bytes, size_t size, off_t offset, fuse_file_info* info) {
    PassThrough& self = Self(request);
    Node& at = self.At(ino);
    const Fate fate = self.Calls().Enter(Call::Write, self.NameOf(at), size);
    PassWith(request, fate, at, [=](PassThrough& files, const Node& node) {
        const size_t room = RoomFor(fate, size);
        if (room == 0 && size > 0) {
            return fate.error;
        }
        const ssize_t count = ::pwrite(FileOf(info), bytes, room, offset);
        if (count < 0) {
            return errno;
        }
        files.Watch(node);
        fuse_reply_write(request, static_cast<size_t>(count));
        return 0;
    });
}

void Flush(fuse_req_t request, fuse_ino_t ino, fuse_file_info* info) {
    Pass(request, Call::Flush, ino,
         [=](PassThrough&, const Node&) { return Done(request, ::close(::dup(FileOf(info)))); });
}

// The file is closed whatever goes wrong: the kernel does not ask twice.
void Release(fuse_req_t request, fuse_ino_t ino, fuse_file_info* info) {
    PassThrough& self = Self(request);
    Node& at = self.At(ino);
    const int file = FileOf(info);
    const Fate fate = self.Calls().Enter(Call::Release, self.NameOf(at));
    ::close(file);
    self.CountOpen(at, -1);
    PassWith(request, fate, at, [=](PassThrough&, const Node&) { return Done(request, 0); });
}

void Sync(fuse_req_t request, fuse_ino_t ino, int dataOnly, fuse_file_info* info) {
    Pass(request, Call::Sync, ino, [=](PassThrough&, const Node&) {
        return Done(request, dataOnly != 0 ? ::fdatasync(FileOf(info)) : ::fsync(FileOf(info)));
    });
}

DIR* FolderOf(const fuse_file_info* info) {
    return reinterpret_cast<DIR*>(info->fh);
}

void OpenFolder(fuse_req_t request, fuse_ino_t ino, fuse_file_info* info) {
    Pass(request, Call::OpenFolder, ino, [=](PassThrough&, const Node& node) {
        DIR* folder = ::opendir(PathOf(node).c_str());
        if (folder == nullptr) {
            return errno;
        }
        info->fh = reinterpret_cast<std::uint64_t>(folder);
        fuse_reply_open(request, info);
        return 0;
    });
}

/// Adds a name of a folder to an answer, with what the file system knows of the file, as a share tells it too. Returns
/// the bytes that takes; more than `left` when it does not fit.
size_t AddEntry(fuse_req_t request, char* place, size_t left, const Node& folder, const dirent& entry) {
    PassThrough& self = Self(request);
    const std::string_view name(entry.d_name);
    fuse_entry_param found{};
    found.attr.st_ino = entry.d_ino;
    found.attr.st_mode = DTTOIF(entry.d_type);
    if (name != "." && name != ".." && self.Find(folder, entry.d_name, found) != 0) {
        return 0; // it has vanished
    }
    const size_t needed = fuse_add_direntry_plus(request, place, left, entry.d_name, &found, entry.d_off);
    if (needed > left && found.ino != 0) {
        self.Forget(found.ino, 1);
    }
    return needed;
}

void ReadFolder(fuse_req_t request, fuse_ino_t ino, size_t size, off_t offset, fuse_file_info* info) {
    Pass(request, Call::ReadFolder, ino, [=](PassThrough&, const Node& node) {
        std::vector<char> bytes(size);
        size_t used = 0;
        offset == 0 ? ::rewinddir(FolderOf(info)) : ::seekdir(FolderOf(info), offset);
        while (const dirent* entry = ::readdir(FolderOf(info))) {
            const size_t needed = AddEntry(request, bytes.data() + used, size - used, node, *entry);
            if (needed > size - used) {
                break;
            }
            used += needed;
        }
        fuse_reply_buf(request, bytes.data(), used);
        return 0;
    });
}

void ReleaseFolder(fuse_req_t request, fuse_ino_t ino, fuse_file_info* info) {
    DIR* folder = FolderOf(info);
    Pass(request, Call::ReleaseFolder, ino, [=](PassThrough&, const Node&) { return Done(request, 0); });
    ::closedir(folder);
}

void SyncFolder(fuse_req_t request, fuse_ino_t ino, int, fuse_file_info* info) {
    Pass(request, Call::SyncFolder, ino,
         [=](PassThrough&, const Node&) { return Done(request, ::fsync(::dirfd(FolderOf(info)))); });
}

void StatFs(fuse_req_t request, fuse_ino_t ino) {
    Pass(request, Call::StatFs, ino, [=](PassThrough&, const Node& node) {
        struct statvfs status {};
        if (::fstatvfs(node.descriptor, &status) != 0) {
            return errno;
        }
        fuse_reply_statfs(request, &status);
        return 0;
    });
}

} // namespace

fuse_lowlevel_ops PassThroughOperations() {
    fuse_lowlevel_ops operations{};
    operations.lookup = Lookup;
    operations.forget = Forget;
    operations.forget_multi = ForgetMulti;
    operations.getattr = GetAttributes;
    operations.setattr = SetAttributes;
    operations.readlink = ReadLink;
    operations.mkdir = MakeFolder;
    operations.symlink = MakeSymLink;
    operations.link = MakeLink;
    operations.unlink = Unlink;
    operations.rmdir = RemoveFolder;
    operations.rename = Rename;
    operations.create = Create;
    operations.open = Open;
    operations.read = Read;
    operations.write = Write;
    operations.flush = Flush;
    operations.release = Release;
    operations.fsync = Sync;
    operations.opendir = OpenFolder;
    operations.readdirplus = ReadFolder;
    operations.releasedir = ReleaseFolder;
    operations.fsyncdir = SyncFolder;
    operations.statfs = StatFs;
    return operations;
}

} // namespace quellbox
