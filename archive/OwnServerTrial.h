#pragma once

#include "archive/NewestMessages.h"
#include "mail/OwnServer.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace quellbox {

/// Finds out what the header fields of a server that the user describes hold in the newest message of an archive. It
/// reads beside the thread that wants to know.
class OwnServerTrial {
public:
    /// All texts are cleansed for display.
    struct Result {
        QString file;           ///< name of the message; empty where the archive holds none
        QString error;          ///< why the archive or the message cannot be read; empty when it can
        QString rating;         ///< as the list would show it; empty when the message has none
        QString sender;         ///< of the envelope, as the list would know it; empty when the message has none
        QStringList recipients; ///< to whom the message would be released
    };

    /// Calls `done` once, on the thread that made this object and runs an event loop; it may destroy this object.
    /// Destruction before that drops the answer without waiting for it.
    OwnServerTrial(const FileSystem& files, WorkPool& pool, const Folder& archive, const OwnServer& server,
                   std::function<void(const Result&)> done);

    void Start() { newest_.Start(); }

private:
    static Result Read(const FolderReader& folder, const QString& name, const ServerProfile& profile);
    void End(const QString& error);

    const std::shared_ptr<const ServerProfile> profile_;
    Result result_;
    std::function<void(const Result&)> done_;
    NewestMessages<Result> newest_;
};

} // namespace quellbox
