#include "archive/ProfileDetection.h"

#include "mail/HeaderFields.h"
#include "platform/RuntimeError.h"

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

/// For each profile, whether a message has a field that only such a server writes. A file that cannot be read has none.
std::vector<bool> MarksOf(const FolderReader& folder, const QString& name, const WantedFields& all) {
    std::vector<bool> marks;
    FieldValueList values(all.Count());
    try {
        values = ReadFieldValues(folder, name, all);
    } catch (const RuntimeError&) {
        // It has vanished, or is another's to read: the others will say.
    }
    auto value = values.begin();
    for (const ServerProfile& profile : ServerProfiles()) {
        const auto end = value + profile.marks.size();
        marks.push_back(std::any_of(value, end, [](const auto& found) { return found.has_value(); }));
        value = end;
    }
    return marks;
}

} // namespace

ProfileDetection::ProfileDetection(const FileSystem& files, WorkPool& pool, const Folder& archive,
                                   std::function<void(Result)> done)
    : pool_(pool), done_(std::move(done)),
      listing_(files, pool, archive, [this](Listing listing) { ReadNewest(std::move(listing)); }),
      marked_(ServerProfiles().size()) {}

void ProfileDetection::Start() {
    listing_.Start();
}

void ProfileDetection::ReadNewest(Listing listing) {
    if (!listing.reader) {
        result_.error = listing.error;
        End();
        return;
    }
    const size_t count = std::min(newest, listing.files.size());
    QStringList names;
    for (auto file = listing.files.end() - static_cast<std::ptrdiff_t>(count); file != listing.files.end(); ++file) {
        names.append(file->name);
    }
    reading_.emplace(
        pool_, count,
        [names, folder = std::move(listing.reader), all = AllMarks()](size_t item) {
            return MarksOf(*folder, names[static_cast<qsizetype>(item)], all);
        },
        [this](size_t, const std::vector<bool>& marks) { Count(marks); }, [this](SeriesEnd) { End(); });
    reading_->Start();
}

void ProfileDetection::Count(const std::vector<bool>& marks) {
    ++result_.looked;
    for (size_t profile = 0; profile < marks.size(); ++profile) {
        marked_[profile] += marks[profile] ? 1 : 0;
    }
}

// Where several are as frequent, the earlier one of the table is the more special one.
void ProfileDetection::End() {
    const auto most = std::max_element(marked_.begin(), marked_.end());
    result_.marked = *most;
    if (*most > 0) {
        result_.profile = &ServerProfiles()[static_cast<size_t>(most - marked_.begin())];
    }
    const auto done = std::move(done_);
    done(std::move(result_));
}

} // namespace quellbox
