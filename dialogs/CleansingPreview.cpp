#include "dialogs/CleansingPreview.h"

#include "archive/LocalTime.h"
#include "platform/RuntimeError.h"

#include <algorithm>
#include <vector>

namespace quellbox {

namespace {

/// What is wrong, without the folder, which the user knows.
QString ReasonOf(const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (const FileError& error) {
        return error.Reason();
    } catch (...) {
        return TextOf(thrown);
    }
}

} // namespace

/// The archive as it was listed.
struct CleansingPreview::Found {
    std::unique_ptr<const FolderReader> reader;
    std::vector<Message> messages; ///< of which the folder has reported size and time
    QStringList others;            ///< names of which it has not; some may be no files
};

CleansingPreview::CleansingPreview(const FileSystem& files, WorkPool& pool) : files_(files), pool_(pool) {}

void CleansingPreview::Start(const Folder& archiveDir, const MessagePlaces& places) {
    if (listing_) {
        return;
    }
    listing_.emplace(
        pool_, 1, [&files = files_, archiveDir, places](size_t) { return Read(files, archiveDir, places); },
        [this](size_t, std::shared_ptr<Found> found) { found_ = std::move(found); },
        [this](SeriesEnd how) { how == SeriesEnd::Completed ? ReadStatuses() : End(ReasonOf(listing_->Failure())); },
        oneAtATime);
    listing_->Start();
}

CleansingPreview::Message CleansingPreview::MessageOf(const FileStatus& status) {
    return {LocalDay(status.modifiedNs), status.size};
}

std::shared_ptr<CleansingPreview::Found> CleansingPreview::Read(const FileSystem& files, const Folder& archive,
                                                                const MessagePlaces& places) {
    auto found = std::make_shared<Found>();
    found->reader = files.ReadFolder(archive);
    for (FolderEntry& entry : EntriesOf(files, archive, places)) {
        const bool mayBeFile = entry.kind == EntryKind::File || entry.kind == EntryKind::Unknown;
        if (entry.hidden || !mayBeFile || !IsMessageName(places, entry.name)) {
            continue;
        }
        if (entry.status) {
            found->messages.push_back(MessageOf(*entry.status));
        } else {
            found->others.append(std::move(entry.name));
        }
    }
    return found;
}

void CleansingPreview::ReadStatuses() {
    std::for_each(found_->messages.begin(), found_->messages.end(), [this](const Message& message) { Add(message); });
    statuses_.emplace(
        pool_, static_cast<size_t>(found_->others.size()),
        [found = found_](size_t file) -> std::optional<Message> {
            const auto status = found->reader->Status(found->others.at(static_cast<qsizetype>(file)));
            return status ? std::optional(MessageOf(*status)) : std::nullopt;
        },
        [this](size_t, const std::optional<Message>& message) {
            if (message) {
                Add(*message);
            }
        },
        [this](SeriesEnd how) { End(how == SeriesEnd::Completed ? QString() : ReasonOf(statuses_->Failure())); });
    statuses_->Start();
}

void CleansingPreview::Add(const Message& message) {
    DayTotal& total = messages_[message.day];
    ++total.count;
    total.bytes += message.bytes;
}

void CleansingPreview::End(const QString& error) {
    // The folder is held open no longer.
    found_ = nullptr;
    statuses_.reset();
    error_ = error;
    hasEnded_ = true;
    Q_EMIT Ended();
}

} // namespace quellbox
