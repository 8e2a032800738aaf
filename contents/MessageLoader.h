#pragma once

#include "contents/StructureTree.h"
#include "mail/HeaderFields.h"
#include "mail/ServerProfile.h"
#include "platform/FileSystem.h"
#include "platform/OrderedWork.h"

#include <QObject>

#include <exception>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quellbox {

/// What is wanted of a message file. When nothing but `ifExists` is set, only whether the file is there.
struct MessageRequest {
    QString path;
    bool ifExists = false;  ///< a file that is not there is no failure
    bool text = false;      ///< the whole file as text
    bool structure = false; ///< the structure tree
    bool readable = false;  ///< the text as a person reads it, in place of the source
    /// Of the server that has blocked the message; must outlive the loader.
    const ServerProfile* profile = &ServerProfiles().front();
};

/// A piece of what was wanted.
struct MessageAnswer {
    enum class Kind {
        Nothing,    ///< to be passed over
        Gone,       ///< there is no such file
        Exists,     ///< there is, and no more was wanted
        Unreadable, ///< `reason` says why; `text` does as well, where it is to be shown in place of the message
        Text,
        Structure, ///< empty when the message cannot be parsed
        Headers,
    };

    Kind kind = Kind::Nothing;
    bool isLast = true; ///< no further answer follows
    QString path;       ///< of the file, or what the failure names
    QString text;
    QString reason;
    StructureTree structure;
    HeaderFields headers;
};

/// Reads and parses message files beside the thread that wants them, so that neither a large message nor a stalled
/// share holds it up. A file is read once; its text comes first, its structure when it is parsed.
///
/// Destruction does not wait for a file that is being read; the file system must therefore outlive the pool. All
/// methods belong to the thread of the object, which runs an event loop.
class MessageLoader : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void(const MessageAnswer&)>;

    MessageLoader(const FileSystem& files, WorkPool& pool);
    ~MessageLoader() override;
    MessageLoader(const MessageLoader&) = delete;
    MessageLoader& operator=(const MessageLoader&) = delete;

    /// Asks for a message, in place of the one that was asked for before. The handler must not throw.
    void Load(const MessageRequest& request, Handler handler);

    /// Asks for the header fields of a file, beside everything else. Does nothing while they are on their way. Of many
    /// that do not come, the oldest are forgotten.
    void LoadHeaders(const QString& path, const ServerProfile& profile, Handler handler);

    /// Forgets the message that was asked for last; none of its answers is handed over any more.
    void CancelLoad();

    /// Forgets all that was asked for.
    void Cancel();

    /// True while answers are to come.
    bool IsBusy() const { return message_ != nullptr || !headers_.empty(); }

Q_SIGNALS:
    /// Reading or parsing ended in something that is no answer, as for want of memory.
    void Failed(const QString& reason);

    /// Nothing is to come any more.
    void Idle();

private:
    class Job;
    using Work = OrderedWork<MessageAnswer>;
    using HeaderReaders = std::vector<std::pair<QString, std::unique_ptr<Work>>>; // by path

    void EndMessage(SeriesEnd how);
    HeaderReaders::iterator FindHeaders(const QString& path);
    void EndHeaders(const QString& path, SeriesEnd how);
    void TellEnd(SeriesEnd how, const std::exception_ptr& failure);

    const FileSystem& files_;
    WorkPool& pool_;
    std::unique_ptr<Work> message_;
    std::shared_ptr<Job> job_; // of message_
    HeaderReaders headers_;    // the oldest first
};

} // namespace quellbox
