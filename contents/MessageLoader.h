#pragma once

#include "contents/StructureTree.h"
#include "mail/HeaderFields.h"
#include "platform/FileSystem.h"

#include <QObject>
#include <QThreadPool>

#include <chrono>
#include <exception>
#include <functional>
#include <map>
#include <memory>

namespace quellbox {

/// What is wanted of a message file. When nothing but `ifExists` is set, only whether the file is there.
struct MessageRequest {
    QString path;
    bool ifExists = false;  ///< a file that is not there is no failure
    bool text = false;      ///< the whole file as text
    bool structure = false; ///< the structure tree
};

/// A piece of what was wanted.
struct MessageAnswer {
    enum class Kind {
        Gone,       ///< there is no such file
        Exists,     ///< there is, and no more was wanted
        Unreadable, ///< `reason` says why
        Text,
        Structure, ///< empty when the message cannot be parsed
        Headers,
        Failed, ///< `failure` was thrown, and Deliver() throws it after the handler
    };

    Kind kind = Kind::Failed;
    bool isLast = true; ///< no further answer follows
    QString path;       ///< of the file, or what the failure names
    QString text;
    QString reason;
    StructureTree structure;
    HeaderFields headers;
    std::exception_ptr failure;
};

/// Reads and parses message files in a thread pool, so that neither a large message nor a stalled share holds up the
/// thread that wants them. A file is read once; its text comes first, its structure when it is parsed.
///
/// Destruction does not wait for a reader that is stuck in a slow call; the file system must therefore outlive the
/// thread pool. All methods belong to the thread of the object.
class MessageLoader : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void(const MessageAnswer&)>;

    MessageLoader(const FileSystem& files, QThreadPool& pool);
    ~MessageLoader() override;
    MessageLoader(const MessageLoader&) = delete;
    MessageLoader& operator=(const MessageLoader&) = delete;

    /// Asks for a message, in place of the one that was asked for before.
    void Load(const MessageRequest& request, Handler handler);

    /// Asks for the header fields of a file, beside everything else. Does nothing while they are on their way.
    void LoadHeaders(const QString& path, Handler handler);

    /// Forgets the message that was asked for last; none of its answers is handed over any more.
    void CancelLoad();

    /// Forgets all that was asked for.
    void Cancel();

    /// True while answers are to come.
    bool IsBusy() const { return !underWay_.empty(); }

    /// Hands over the answers that are there. Throws what reading or a handler threw; Arrived() then announces the
    /// rest.
    void Deliver();

    /// Hands over answers as they come until there are no more to come, but no longer than `limit`. No event is
    /// processed meanwhile. Returns whether all are there. Throws as Deliver() does.
    bool WaitFor(std::chrono::milliseconds limit);

Q_SIGNALS:
    /// Answers may be there for Deliver().
    void Arrived();

private:
    struct Job;
    struct Shared;
    struct Expected {
        std::shared_ptr<Job> job;
        Handler handler;
    };

    quint64 Start(const MessageRequest& request, bool headers, Handler handler);
    void Forget(quint64 id);

    std::shared_ptr<Shared> shared_;
    std::map<quint64, Expected> underWay_;
    quint64 lastId_ = 0;
    quint64 message_ = 0; // what Load() started last
};

} // namespace quellbox
