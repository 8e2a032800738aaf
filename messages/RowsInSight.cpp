#include "messages/RowsInSight.h"

#include <algorithm>
#include <utility>

namespace quellbox {

// The row that a place has, or would have.
int RowsInSight::RowFor(int place) const {
    return static_cast<int>(std::lower_bound(places_.begin(), places_.end(), place) - places_.begin());
}

int RowsInSight::RowAt(int place) const {
    if (!IsNarrowed()) {
        return place;
    }
    const int row = RowFor(place);
    const bool isInSight = row < static_cast<int>(places_.size()) && PlaceOf(row) == place;
    return isInSight ? row : -1;
}

std::vector<int> RowsInSight::PlacesOf(std::vector<int> rows) const {
    std::transform(rows.begin(), rows.end(), rows.begin(), [this](int row) { return PlaceOf(row); });
    return rows;
}

std::vector<int> RowsInSight::PlacesFor(const QuickFilter& filter, const std::vector<MessageRow>& rows) {
    std::vector<int> found;
    if (filter.IsEmpty()) {
        return found;
    }
    const int total = static_cast<int>(rows.size());
    Prepare(rows, total);
    const bool looksInSight = IsNarrowed() && filter.IsWithin(filter_) && !hasLate_;
    const int candidates = looksInSight ? Count(total) : total;
    for (int candidate = 0; candidate < candidates; ++candidate) {
        const int place = looksInSight ? PlaceOf(candidate) : candidate;
        if (filter.Matches(folded_.Text(place))) {
            found.push_back(place);
        }
    }
    return found;
}

bool RowsInSight::IsShown(const QuickFilter& filter, const std::vector<int>& places, int total) const {
    if (!filter.IsEmpty() && IsNarrowed()) {
        return places == places_;
    }
    const int count = filter.IsEmpty() ? total : static_cast<int>(places.size());
    return count == total && Count(total) == total;
}

void RowsInSight::Show(const QuickFilter& filter, std::vector<int> places) {
    filter_ = filter;
    places_ = std::move(places);
    hasLate_ = false;
}

bool RowsInSight::Prepare(const std::vector<MessageRow>& rows, int most) {
    const int total = static_cast<int>(rows.size());
    const int end = std::min(total, folded_.Count() + most);
    for (int place = folded_.Count(); place < end; ++place) {
        folded_.Append(rows[static_cast<size_t>(place)]);
    }
    return end < total;
}

void RowsInSight::Forget() {
    if (!IsNarrowed()) {
        folded_.Clear();
    }
}

std::vector<int> RowsInSight::PlacesOfNew(const std::vector<MessageRow>& rows) {
    std::vector<int> places;
    if (!IsNarrowed()) {
        return places;
    }
    for (const MessageRow& row : rows) {
        const int place = folded_.Count();
        folded_.Append(row);
        if (filter_.Matches(folded_.Text(place))) {
            places.push_back(place);
        }
    }
    return places;
}

void RowsInSight::Add(int place) {
    places_.insert(places_.begin() + RowFor(place), place);
}

void RowsInSight::Put(int place, const MessageRow& row) {
    if (place >= folded_.Count()) {
        return;
    }
    folded_.Replace(place, row);
    hasLate_ = hasLate_ || RowAt(place) < 0;
}

// What is ready of some rows only would have to be told from the others, if they moved.
void RowsInSight::ForgetUnfinished(int total) {
    if (folded_.Count() < total) {
        Forget();
    }
}

void RowsInSight::Remove(const std::vector<int>& places, int total) {
    ForgetUnfinished(total);
    if (folded_.Count() > 0) {
        folded_.Remove(places);
    }
    std::vector<int> left;
    left.reserve(places_.size());
    auto removed = places.begin();
    for (const int place : places_) {
        removed = std::find_if(removed, places.end(), [place](int gone) { return gone >= place; });
        if (removed == places.end() || *removed != place) {
            left.push_back(place - static_cast<int>(removed - places.begin()));
        }
    }
    places_ = std::move(left);
}

void RowsInSight::RemoveAll() {
    places_.clear();
    hasLate_ = false;
    folded_.Clear();
}

void RowsInSight::Reorder(const std::vector<int>& sequence, const std::vector<int>& newPlaces) {
    ForgetUnfinished(static_cast<int>(sequence.size()));
    if (folded_.Count() > 0) {
        folded_.Reorder(sequence);
    }
    for (int& place : places_) {
        place = newPlaces[static_cast<size_t>(place)];
    }
    std::sort(places_.begin(), places_.end());
}

} // namespace quellbox
