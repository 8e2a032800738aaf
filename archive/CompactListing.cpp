#include "archive/CompactListing.h"

#include <algorithm>
#include <stdexcept>

namespace quellbox {

namespace {

constexpr qint64 unknownSize = -1;

constexpr size_t chunkBytes = size_t{1} << 20; // what an offset can name
constexpr size_t longestName = (size_t{1} << 21) - 1;

bool IsNarrow(QStringView name) {
    return std::all_of(name.begin(), name.end(), [](QChar unit) { return unit.unicode() <= 0xFF; });
}

} // namespace

void CompactListing::Add(QStringView name, const std::optional<FileStatus>& status) {
    const auto length = static_cast<size_t>(name.size());
    if (length > longestName) {
        throw std::length_error("a file name is too long");
    }
    Entry entry{};
    entry.length = length & longestName;
    entry.isWide = IsNarrow(name) ? 0 : 1;
    if (entry.isWide) {
        char* room = Room(length * sizeof(char16_t), alignof(char16_t), entry);
        std::copy_n(name.utf16(), length, reinterpret_cast<char16_t*>(room));
    } else {
        std::transform(name.begin(), name.end(), Room(length, 1, entry), [](QChar unit) { return unit.toLatin1(); });
    }
    entry.size = status ? status->size : unknownSize;
    entry.modifiedNs = status ? status->modifiedNs : 0;
    entries_.push_back(entry);
}

// A name that is larger than a chunk gets one of its own.
char* CompactListing::Room(size_t bytes, size_t alignment, Entry& entry) {
    size_t begin = (used_ + alignment - 1) / alignment * alignment;
    if (chunks_.empty() || begin >= chunkBytes || begin + bytes > capacity_) {
        capacity_ = std::max(bytes, chunkBytes);
        chunks_.push_back(std::make_unique_for_overwrite<char[]>(capacity_));
        begin = 0;
    }
    used_ = begin + bytes;
    entry.chunk = (chunks_.size() - 1) & ((size_t{1} << 22) - 1);
    entry.offset = begin & (chunkBytes - 1);
    return chunks_.back().get() + begin;
}

/// Calls `use` with a name as it is kept.
template <class Use>
auto CompactListing::WithName(const Entry& entry, Use use) const {
    const char* begin = chunks_[entry.chunk].get() + entry.offset;
    const auto length = static_cast<qsizetype>(entry.length);
    return entry.isWide ? use(QStringView(reinterpret_cast<const char16_t*>(begin), length))
                        : use(QLatin1String(begin, length));
}

QString CompactListing::NameAt(size_t file) const {
    return WithName(entries_[file], [](auto name) { return name.toString(); });
}

FileStatus CompactListing::StatusAt(size_t file) const {
    return {entries_[file].size, entries_[file].modifiedNs};
}

FileEntry CompactListing::At(size_t file) const {
    return Made(entries_[file]);
}

FileEntry CompactListing::Made(const Entry& entry) const {
    return {WithName(entry, [](auto name) { return name.toString(); }), {entry.size, entry.modifiedNs}};
}

size_t CompactListing::PutUnknownFirst() {
    const auto known =
        std::partition(entries_.begin(), entries_.end(), [](const Entry& entry) { return entry.size == unknownSize; });
    return static_cast<size_t>(known - entries_.begin());
}

void CompactListing::SetStatus(size_t file, const std::optional<FileStatus>& status) {
    entries_[file].size = status ? status->size : unknownSize;
    entries_[file].modifiedNs = status ? status->modifiedNs : 0;
}

void CompactListing::Sort(const std::function<bool(const FileEntry&)>& wants) {
    std::erase_if(entries_, [this, &wants](const Entry& entry) {
        return entry.size == unknownSize || (wants && !wants(Made(entry)));
    });
    std::sort(entries_.begin(), entries_.end(),
              [this](const Entry& left, const Entry& right) { return IsBefore(left, right); });
}

bool CompactListing::IsBefore(const Entry& left, const Entry& right) const {
    if (left.modifiedNs != right.modifiedNs) {
        return left.modifiedNs < right.modifiedNs;
    }
    return WithName(
        left, [&](auto leftName) { return WithName(right, [&](auto rightName) { return leftName < rightName; }); });
}

} // namespace quellbox
