#include "contents/MessageLoader.h"

#include "contents/RawText.h"
#include "contents/ReadableText.h"
#include "mail/MailMessage.h"
#include "platform/RuntimeError.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace quellbox {

namespace {

using Kind = MessageAnswer::Kind;

constexpr size_t mostHeaderReaders = 4;

} // namespace

/// The reading of a message in two steps, of which only one worker at a time takes care.
class MessageLoader::Job {
public:
    Job(const FileSystem& files, MessageRequest wanted) : files_(files), wanted_(std::move(wanted)) {}

    void Cancel() { cancelled_ = true; }

    /// The first step reads the file, the second one parses it.
    MessageAnswer Step(size_t number) {
        MessageAnswer answer = number == 0 ? Read() : Parse();
        if (answer.path.isEmpty()) {
            answer.path = wanted_.path;
        }
        return answer;
    }

private:
    MessageAnswer Read() {
        MessageAnswer answer;
        if (wanted_.ifExists && !files_.FileExists(wanted_.path)) {
            answer.kind = Kind::Gone;
            return answer;
        }
        if (!wanted_.text && !wanted_.structure) {
            answer.kind = Kind::Exists;
            return answer;
        }
        try {
            bytes_ = ReadWholeMessage(files_, wanted_.path, wanted_.profile->packing, [this] { return !cancelled_; });
        } catch (const PackedFileError& error) {
            // The list cannot say it: it has read no more than the header.
            answer.text = LoadErrorText(error.Error());
            TakeError(error, answer);
            return answer;
        } catch (const FileError& error) {
            TakeError(error, answer);
            return answer;
        }
        isToBeParsed_ = wanted_.structure;
        answer.isLast = !isToBeParsed_;
        if (wanted_.text) {
            answer.kind = Kind::Text;
            const auto goOn = [this] { return !cancelled_; };
            answer.text = wanted_.readable ? ReadableText(bytes_, *wanted_.profile, goOn) : RawText(bytes_);
        }
        return answer;
    }

    static void TakeError(const FileError& error, MessageAnswer& answer) {
        answer.kind = Kind::Unreadable;
        answer.path = error.Path();
        answer.reason = error.Reason();
    }

    MessageAnswer Parse() {
        MessageAnswer answer;
        const QByteArray bytes = std::exchange(bytes_, {});
        if (!isToBeParsed_ || cancelled_) {
            return answer;
        }
        answer.kind = Kind::Structure;
        MailMessage maiTree;
        if (maiTree.LoadBytes(bytes) == 0) {
            answer.structure = BuildStructureTree(maiTree, wanted_.profile->reasons);
        }
        return answer;
    }

    const FileSystem& files_;
    const MessageRequest wanted_;
    QByteArray bytes_;
    bool isToBeParsed_ = false;
    std::atomic<bool> cancelled_{false};
};

MessageLoader::MessageLoader(const FileSystem& files, WorkPool& pool) : files_(files), pool_(pool) {}

MessageLoader::~MessageLoader() {
    Cancel();
}

void MessageLoader::Load(const MessageRequest& request, Handler handler) {
    CancelLoad();
    job_ = std::make_shared<Job>(files_, request);
    const auto hand = [handler = std::move(handler)](size_t, const MessageAnswer& answer) {
        if (answer.kind != Kind::Nothing) {
            handler(answer);
        }
    };
    message_ = std::make_unique<Work>(
        pool_, 2, [job = job_](size_t step) { return job->Step(step); }, hand,
        [this](SeriesEnd how) { EndMessage(how); }, oneAtATime);
    message_->Start();
}

void MessageLoader::LoadHeaders(const QString& path, const ServerProfile& profile, Handler handler) {
    if (FindHeaders(path) != headers_.end()) {
        return;
    }
    const auto read = [&files = files_, &profile, path](size_t) {
        MessageAnswer answer;
        answer.kind = Kind::Headers;
        answer.path = path;
        answer.headers = ReadHeaderFields(files, path, profile);
        return answer;
    };
    // The readers of a share that stalls must leave threads for everything else.
    if (headers_.size() == mostHeaderReaders) {
        headers_.erase(headers_.begin());
    }
    auto work = std::make_unique<Work>(
        pool_, 1, read, [handler = std::move(handler)](size_t, const MessageAnswer& answer) { handler(answer); },
        [this, path](SeriesEnd how) { EndHeaders(path, how); }, oneAtATime);
    work->Start();
    headers_.emplace_back(path, std::move(work));
}

MessageLoader::HeaderReaders::iterator MessageLoader::FindHeaders(const QString& path) {
    return std::find_if(headers_.begin(), headers_.end(), [&path](const auto& reader) { return reader.first == path; });
}

void MessageLoader::CancelLoad() {
    if (job_) {
        job_->Cancel();
    }
    job_.reset();
    message_.reset();
}

void MessageLoader::Cancel() {
    CancelLoad();
    headers_.clear();
}

void MessageLoader::EndMessage(SeriesEnd how) {
    const std::exception_ptr failure = message_->Failure();
    CancelLoad();
    TellEnd(how, failure);
}

void MessageLoader::EndHeaders(const QString& path, SeriesEnd how) {
    const auto reader = FindHeaders(path);
    const std::exception_ptr failure = reader->second->Failure();
    headers_.erase(reader);
    TellEnd(how, failure);
}

void MessageLoader::TellEnd(SeriesEnd how, const std::exception_ptr& failure) {
    if (how == SeriesEnd::Failed) {
        Q_EMIT Failed(TextOf(failure));
    }
    if (!IsBusy()) {
        Q_EMIT Idle();
    }
}

} // namespace quellbox
