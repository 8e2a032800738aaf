#include "contents/MessageLoader.h"

#include "contents/RawText.h"
#include "mail/MailMessage.h"
#include "platform/RuntimeError.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QWaitCondition>

#include <algorithm>
#include <atomic>
#include <deque>

namespace quellbox {

namespace {

// A few more than one, so that one message of a share that stalls does not keep the others from being shown; but so few
// that those who click their way through such a share leave threads for everything else.
constexpr int mostReaders = 4;

using Kind = MessageAnswer::Kind;

} // namespace

struct MessageLoader::Job {
    quint64 id = 0;
    MessageRequest request;
    bool headers = false;
    std::atomic<bool> cancelled{false};
};

struct MessageLoader::Shared {
    Shared(const FileSystem& fileSystem, QThreadPool& threads, MessageLoader* owner)
        : files(fileSystem), pool(threads), receiver(owner) {}

    const FileSystem& files;
    QThreadPool& pool;

    QMutex mutex; // of everything below
    QWaitCondition answered;
    MessageLoader* receiver; // null when it is gone
    int readers = 0;
    std::deque<std::shared_ptr<Job>> waiting;
    std::deque<std::pair<quint64, MessageAnswer>> answers;

    static void Add(const std::shared_ptr<Shared>& self, const std::shared_ptr<Job>& job) {
        const QMutexLocker lock(&self->mutex);
        if (job->headers) {
            self->waiting.push_back(job);
        } else {
            self->waiting.push_front(job); // it is what the user looks at
        }
        if (self->readers < mostReaders) {
            ++self->readers;
            self->pool.start([self] { self->ReadOn(); });
        }
    }

    void ReadOn() {
        while (const std::shared_ptr<Job> job = Next()) {
            Run(*job);
        }
    }

    std::shared_ptr<Job> Next() {
        const QMutexLocker lock(&mutex);
        while (!waiting.empty()) {
            std::shared_ptr<Job> job = std::move(waiting.front());
            waiting.pop_front();
            if (!job->cancelled) {
                return job;
            }
        }
        --readers;
        return nullptr;
    }

    // Nothing may leave a reader's thread, not even a lack of memory.
    void Run(const Job& job) {
        try {
            job.headers ? ReadHeaders(job) : ReadMessage(job);
        } catch (...) {
            MessageAnswer answer;
            answer.failure = std::current_exception();
            Post(job, std::move(answer));
        }
    }

    void ReadHeaders(const Job& job) {
        MessageAnswer answer;
        answer.kind = Kind::Headers;
        answer.headers = ReadHeaderFields(files, job.request.path);
        Post(job, std::move(answer));
    }

    void ReadMessage(const Job& job) {
        const MessageRequest& wanted = job.request;
        const bool onlyLooks = !wanted.text && !wanted.structure;
        if (wanted.ifExists && !files.FileExists(wanted.path)) {
            Post(job, Kind::Gone);
            return;
        }
        if (onlyLooks) {
            Post(job, Kind::Exists);
            return;
        }
        QByteArray bytes;
        try {
            bytes = ReadWhole(files, wanted.path, [&job] { return !job.cancelled; });
        } catch (const FileError& error) {
            MessageAnswer answer;
            answer.kind = Kind::Unreadable;
            answer.path = error.Path();
            answer.reason = error.Reason();
            Post(job, std::move(answer));
            return;
        }
        if (wanted.text && !job.cancelled) {
            MessageAnswer answer;
            answer.kind = Kind::Text;
            answer.isLast = !wanted.structure;
            answer.text = RawText(bytes);
            Post(job, std::move(answer));
        }
        if (wanted.structure && !job.cancelled) {
            PostStructure(job, bytes);
        }
    }

    void PostStructure(const Job& job, const QByteArray& bytes) {
        MessageAnswer answer;
        answer.kind = Kind::Structure;
        MailMessage maiTree;
        if (maiTree.LoadBytes(bytes) == 0) {
            answer.structure = BuildStructureTree(maiTree);
        }
        Post(job, std::move(answer));
    }

    void Post(const Job& job, Kind kind) {
        MessageAnswer answer;
        answer.kind = kind;
        Post(job, std::move(answer));
    }

    void Post(const Job& job, MessageAnswer answer) {
        if (answer.path.isEmpty()) {
            answer.path = job.request.path;
        }
        const QMutexLocker lock(&mutex);
        if (job.cancelled || receiver == nullptr) {
            return;
        }
        answers.emplace_back(job.id, std::move(answer));
        answered.wakeAll();
        Announce();
    }

    // With the mutex held, which keeps the receiver alive.
    void Announce() { QMetaObject::invokeMethod(receiver, &MessageLoader::Arrived, Qt::QueuedConnection); }
};

MessageLoader::MessageLoader(const FileSystem& files, QThreadPool& pool)
    : shared_(std::make_shared<Shared>(files, pool, this)) {}

MessageLoader::~MessageLoader() {
    Cancel();
    const QMutexLocker lock(&shared_->mutex);
    shared_->receiver = nullptr;
    shared_->waiting.clear();
    shared_->answers.clear();
}

void MessageLoader::Load(const MessageRequest& request, Handler handler) {
    CancelLoad();
    message_ = Start(request, false, std::move(handler));
}

void MessageLoader::LoadHeaders(const QString& path, Handler handler) {
    const bool isComing = std::any_of(underWay_.begin(), underWay_.end(), [&path](const auto& entry) {
        const Job& job = *entry.second.job;
        return job.headers && job.request.path == path;
    });
    if (!isComing) {
        MessageRequest request;
        request.path = path;
        Start(request, true, std::move(handler));
    }
}

quint64 MessageLoader::Start(const MessageRequest& request, bool headers, Handler handler) {
    const auto job = std::make_shared<Job>();
    job->id = ++lastId_;
    job->request = request;
    job->headers = headers;
    underWay_[job->id] = {job, std::move(handler)};
    Shared::Add(shared_, job);
    return job->id;
}

void MessageLoader::Forget(quint64 id) {
    const auto found = underWay_.find(id);
    if (found != underWay_.end()) {
        found->second.job->cancelled = true;
        underWay_.erase(found);
    }
}

void MessageLoader::CancelLoad() {
    Forget(message_);
}

void MessageLoader::Cancel() {
    while (!underWay_.empty()) {
        Forget(underWay_.begin()->first);
    }
}

void MessageLoader::Deliver() {
    for (;;) {
        std::pair<quint64, MessageAnswer> next;
        {
            const QMutexLocker lock(&shared_->mutex);
            if (shared_->answers.empty()) {
                return;
            }
            next = std::move(shared_->answers.front());
            shared_->answers.pop_front();
            if (!shared_->answers.empty()) {
                shared_->Announce(); // a handler may throw
            }
        }
        const auto expected = underWay_.find(next.first);
        if (expected == underWay_.end()) {
            continue; // cancelled meanwhile
        }
        // A handler may ask for the next message, or for none.
        const Handler handler = expected->second.handler;
        if (next.second.isLast) {
            underWay_.erase(expected);
        }
        handler(next.second);
        if (next.second.failure) {
            std::rethrow_exception(next.second.failure);
        }
    }
}

bool MessageLoader::WaitFor(std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    for (;;) {
        Deliver();
        if (underWay_.empty()) {
            return true;
        }
        const QMutexLocker lock(&shared_->mutex);
        while (shared_->answers.empty()) {
            if (!shared_->answered.wait(&shared_->mutex, deadline)) {
                break;
            }
        }
        if (shared_->answers.empty()) {
            return false;
        }
    }
}

} // namespace quellbox
