#pragma once

#include "archive/NewestMessages.h"
#include "mail/ServerProfile.h"

#include <functional>
#include <optional>
#include <vector>

namespace quellbox {

/// Finds out which kind of server has blocked the messages of an archive: from the folders in it, or else from the
/// header fields of the newest messages. It reads beside the thread that wants to know.
class ProfileDetection {
public:
    struct Result {
        const ServerProfile* profile = nullptr; ///< null unless at least half of the messages say so
        int marked = 0; ///< so many messages have a field of that kind of server, or are in its folders
        int looked = 0; ///< of so many that could be read
        QString error;  ///< why nothing could be read; empty when something could
    };

    /// So many messages are looked at.
    static constexpr size_t newest = 50;

    /// Calls `done` once, on the thread that made this object and runs an event loop; it may destroy this object.
    /// Destruction before that drops the answer without waiting for it.
    ProfileDetection(const FileSystem& files, WorkPool& pool, const Folder& archive, std::function<void(Result)> done);

    void Start();

private:
    static std::optional<size_t> ProfileWithFoldersOf(const FileSystem& files, const Folder& archive);
    void List();

    /// What a message has.
    struct Marks {
        std::vector<bool> of; ///< by profile
        QString error;        ///< why it cannot be read
    };

    static Marks Read(const FolderReader& folder, const QString& name, const WantedFields& all);
    void Count(const Marks& marks);
    void End(const QString& error);

    const FileSystem& files_;
    WorkPool& pool_;
    const Folder archive_;
    std::function<void(Result)> done_;
    std::optional<OrderedWork<std::optional<size_t>>> looking_;
    const ServerProfile* byFolders_ = nullptr; // the archive has the folders of this one
    std::vector<int> marked_;                  // by profile
    Result result_;
    std::optional<NewestMessages<Marks>> messages_;
};

} // namespace quellbox
