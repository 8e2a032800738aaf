#include "platform/FolderListing.h"

#include "platform/RuntimeError.h"

#include <algorithm>
#include <iterator>

namespace quellbox {

namespace {

QStringList DotFolders(const std::vector<FolderEntry>& entries) {
    QStringList names;
    for (const FolderEntry& entry : entries) {
        const bool mayBeFolder = entry.kind == EntryKind::Folder || entry.kind == EntryKind::Unknown;
        if (mayBeFolder && entry.name.startsWith(QLatin1Char('.'))) {
            names.append(entry.name);
        }
    }
    return names;
}

/// Removes what is certainly no regular file.
void KeepPossibleFiles(std::vector<FolderEntry>& entries) {
    std::erase_if(entries, [](const FolderEntry& entry) {
        return entry.kind != EntryKind::File && entry.kind != EntryKind::Unknown;
    });
}

bool IsUnanswered(const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (const FileError& error) {
        return error.Problem() == FileProblem::NoAnswer;
    } catch (...) {
        return false;
    }
}

} // namespace

void FolderState::Open(const FileSystem& files, const Folder& folder, const std::function<void()>& list) {
    exists = files.FolderExists(folder);
    try {
        reader = files.ReadFolder(folder);
        isMountPoint = reader->IsMountPoint();
        list();
    } catch (const FileError& thrown) {
        // A folder on a server that does not answer seems not to exist, but that is no news of the folder.
        isUnanswered = thrown.Problem() == FileProblem::NoAnswer;
        exists = exists || isUnanswered;
        reader = nullptr;
        error = thrown.Text();
    }
}

void FolderState::SetFailure(const std::exception_ptr& thrown) {
    exists = true;
    isUnanswered = IsUnanswered(thrown);
    reader = nullptr;
    error = TextOf(thrown);
}

FolderListing::FolderListing(const FileSystem& files, WorkPool& pool, const Folder& folder,
                             std::function<void(Listing)> done)
    : FolderListing(files, pool, folder, MessagePlaces(), std::move(done)) {}

FolderListing::FolderListing(const FileSystem& files, WorkPool& pool, const Folder& archive, MessagePlaces places,
                             std::function<void(Listing)> done)
    : files_(files), pool_(pool), folder_(archive), places_(std::move(places)), done_(std::move(done)) {}

void FolderListing::Start() {
    reading_.emplace(
        pool_, 1,
        [&files = files_, folder = folder_, places = places_](size_t) {
            return std::make_shared<Found>(Read(files, folder, places));
        },
        [this](size_t, std::shared_ptr<Found> found) { found_ = std::move(found); },
        [this](SeriesEnd how) {
            if (how != SeriesEnd::Completed) {
                Fail(reading_->Failure());
            } else if (found_->incomplete.empty()) {
                Sort();
            } else {
                ReadStatuses();
            }
        },
        oneAtATime);
    reading_->Start();
}

FolderListing::Found FolderListing::Read(const FileSystem& files, const Folder& folder, const MessagePlaces& places) {
    Found found;
    found.listing.Open(files, folder, [&] {
        Entries entries = files.Entries(folder);
        found.listing.dotFolders = DotFolders(entries);
        if (!places.folders.isEmpty()) {
            entries = EntriesOf(files, folder, places);
        }
        if (!places.listsOthers) {
            std::erase_if(entries, [&](const FolderEntry& entry) { return !IsMessageName(places, entry.name); });
        }
        KeepPossibleFiles(entries);
        const auto complete = std::stable_partition(entries.begin(), entries.end(),
                                                    [](const FolderEntry& entry) { return !entry.status; });
        found.complete.assign(std::make_move_iterator(complete), std::make_move_iterator(entries.end()));
        entries.erase(complete, entries.end());
        found.incomplete = std::move(entries);
    });
    return found;
}

void FolderListing::ReadStatuses() {
    statuses_.emplace(
        pool_, found_->incomplete.size(),
        [reader = found_->listing.reader, found = found_](size_t file) {
            return reader->Status(found->incomplete[file].name);
        },
        [this](size_t file, const std::optional<FileStatus>& status) { found_->incomplete[file].status = status; },
        [this](SeriesEnd how) { how == SeriesEnd::Completed ? Sort() : Fail(statuses_->Failure()); });
    statuses_->Start();
}

void FolderListing::Sort() {
    sorting_.emplace(
        pool_, 1, [found = found_](size_t) { return InOrderOfArrival(*found); },
        [this](size_t, std::vector<FileEntry> files) { found_->listing.files = std::move(files); },
        [this](SeriesEnd how) {
            how == SeriesEnd::Completed ? End(std::move(found_->listing)) : Fail(sorting_->Failure());
        },
        oneAtATime);
    sorting_->Start();
}

std::vector<FileEntry> FolderListing::InOrderOfArrival(Found& found) {
    std::vector<FileEntry> files;
    files.reserve(found.complete.size() + found.incomplete.size());
    for (Entries* entries : {&found.complete, &found.incomplete}) {
        for (FolderEntry& entry : *entries) {
            if (entry.status) {
                files.push_back({std::move(entry.name), *entry.status});
            }
        }
        *entries = {};
    }
    std::sort(files.begin(), files.end(), [](const FileEntry& left, const FileEntry& right) {
        return left.status.modifiedNs != right.status.modifiedNs ? left.status.modifiedNs < right.status.modifiedNs
                                                                 : left.name < right.name;
    });
    return files;
}

void FolderListing::Fail(const std::exception_ptr& thrown) {
    Listing listing;
    listing.SetFailure(thrown);
    End(std::move(listing));
}

void FolderListing::End(Listing listing) {
    const std::function<void(Listing)> done = std::move(done_);
    done(std::move(listing));
}

} // namespace quellbox
