#include "archive/ProfileDetection.h"

#include "mail/HeaderFields.h"

#include <algorithm>

namespace quellbox {

namespace {

WantedFields AllMarks() {
    QByteArrayList names;
    for (const ServerProfile& profile : ServerProfiles()) {
        names += profile.marks;
    }
    return WantedFields(names);
}

} // namespace

ProfileDetection::ProfileDetection(const FileSystem& files, WorkPool& pool, const Folder& archive,
                                   std::function<void(Result)> done)
    : files_(files), pool_(pool), archive_(archive), done_(std::move(done)), marked_(ServerProfiles().size()) {}

ProfileDetection::Marks ProfileDetection::Read(const FolderReader& folder, const QString& name,
                                               const WantedFields& all) {
    Marks marks;
    FieldValueList values;
    try {
        values = ReadFieldValues(folder, name, all);
    } catch (const RuntimeError& error) {
        marks.error = error.Text();
        return marks;
    }
    auto value = values.begin();
    for (const ServerProfile& profile : ServerProfiles()) {
        const auto end = value + profile.marks.size();
        marks.of.push_back(std::any_of(value, end, [](const auto& found) { return found.has_value(); }));
        value = end;
    }
    return marks;
}

void ProfileDetection::Start() {
    looking_.emplace(
        pool_, 1, [&files = files_, archive = archive_](size_t) { return ProfileWithFoldersOf(files, archive); },
        [this](size_t, std::optional<size_t> profile) { byFolders_ = profile ? &ServerProfiles()[*profile] : nullptr; },
        [this](SeriesEnd) { List(); }, oneAtATime);
    looking_->Start();
}

/// The place of the profile; empty where the archive has no such folders.
std::optional<size_t> ProfileDetection::ProfileWithFoldersOf(const FileSystem& files, const Folder& archive) {
    const std::vector<ServerProfile>& all = ServerProfiles();
    const auto found = std::find_if(all.begin(), all.end(), [&](const ServerProfile& profile) {
        return !profile.places.folders.isEmpty() && HasFoldersOf(files, archive, profile.places);
    });
    return found == all.end() ? std::nullopt : std::optional(static_cast<size_t>(found - all.begin()));
}

void ProfileDetection::List() {
    messages_.emplace(
        files_, pool_, archive_, byFolders_ != nullptr ? byFolders_->places : MessagePlaces(), newest,
        [all = AllMarks()](const FolderReader& folder, const QString& name) { return Read(folder, name, all); },
        [this](const Marks& marks) { Count(marks); }, [this](const QString& error) { End(error); });
    messages_->Start();
}

void ProfileDetection::Count(const Marks& marks) {
    if (!marks.error.isEmpty()) {
        result_.error = marks.error;
        return;
    }
    ++result_.looked;
    for (size_t profile = 0; profile < marks.of.size(); ++profile) {
        marked_[profile] += marks.of[profile] ? 1 : 0;
    }
}

// A message may have passed another server before, which has left its fields in it.
void ProfileDetection::End(const QString& error) {
    if (!error.isEmpty()) {
        result_.error = error;
    }
    if (result_.looked > 0) {
        result_.error.clear();
    }
    const auto most = std::max_element(marked_.begin(), marked_.end());
    if (byFolders_ != nullptr) {
        result_.marked = result_.looked;
        result_.profile = byFolders_;
    } else if (*most > 0 && 2 * *most >= result_.looked) {
        result_.marked = *most;
        result_.profile = &ServerProfiles()[static_cast<size_t>(most - marked_.begin())];
    }
    const auto done = std::move(done_);
    done(std::move(result_));
}

} // namespace quellbox
