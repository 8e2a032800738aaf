#pragma once

#include "platform/FolderListing.h"
#include "platform/RuntimeError.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

namespace quellbox {

/// Looks at the newest messages of an archive, beside the thread that wants to know of them.
template <class Answer>
class NewestMessages {
public:
    /// Reads a file of the folder, by its name, on threads of the pool.
    using Read = std::function<Answer(const FolderReader& folder, const QString& name)>;
    /// Gets the answers on the thread that made the object, those of older messages first.
    using Take = std::function<void(const Answer& answer)>;
    /// Is called once, on that thread, when the last answer was taken, or with why there are no more. May destroy the
    /// object.
    using Done = std::function<void(const QString& error)>;

    /// Looks at no more than `most` messages. Destruction before the end drops what is missing, without waiting for it.
    NewestMessages(const FileSystem& files, WorkPool& pool, const Folder& archive, const MessagePlaces& places,
                   size_t most, Read read, Take take, Done done)
        : pool_(pool), most_(most), read_(std::move(read)), take_(std::move(take)), done_(std::move(done)),
          listing_(files, pool, archive, places, [this](Listing listing) { ReadNewest(std::move(listing)); }) {}

    void Start() { listing_.Start(); }

private:
    void ReadNewest(Listing listing) {
        if (!listing.reader) {
            End(listing.error);
            return;
        }
        const size_t count = std::min(most_, listing.files.size());
        QStringList names;
        for (auto file = listing.files.end() - static_cast<std::ptrdiff_t>(count); file != listing.files.end();
             ++file) {
            names.append(file->name);
        }
        reading_.emplace(
            pool_, count,
            [names, folder = std::move(listing.reader), read = read_](size_t item) {
                return read(*folder, names[static_cast<qsizetype>(item)]);
            },
            [this](size_t, const Answer& answer) { take_(answer); },
            [this](SeriesEnd how) { End(how == SeriesEnd::Failed ? TextOf(reading_->Failure()) : QString()); });
        reading_->Start();
    }

    void End(const QString& error) {
        const Done done = std::move(done_);
        done(error);
    }

    WorkPool& pool_;
    const size_t most_;
    const Read read_;
    const Take take_;
    Done done_;
    FolderListing listing_;
    std::optional<OrderedWork<Answer>> reading_;
};

} // namespace quellbox
