#include "messages/RowsInSight.h"

#include <algorithm>
#include <utility>

namespace quellbox {

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

std::vector<int> RowsInSight::PlacesFor(const QuickFilter& filter, const FoldedRows& texts) const {
    std::vector<int> found;
    if (filter.IsEmpty()) {
        return found;
    }
    const bool looksInSight = IsNarrowed() && filter.IsWithin(filter_);
    const int candidates = looksInSight ? Count(0) : texts.Count();
    for (int candidate = 0; candidate < candidates; ++candidate) {
        const int place = looksInSight ? PlaceOf(candidate) : candidate;
        if (filter.Matches(texts.Text(place))) {
            found.push_back(place);
        }
    }
    return found;
}

bool RowsInSight::ShowsTheSame(const RowsInSight& other, int total) const {
    if (IsNarrowed() && other.IsNarrowed()) {
        return places_ == other.places_;
    }
    return Count(total) == total && other.Count(total) == total;
}

void RowsInSight::Show(const QuickFilter& filter, std::vector<int> places) {
    filter_ = filter;
    places_ = std::move(places);
}

void RowsInSight::Add(int place) {
    places_.insert(places_.begin() + RowFor(place), place);
}

void RowsInSight::Remove(const std::vector<int>& places) {
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

void RowsInSight::Reorder(const std::vector<int>& newPlaces) {
    for (int& place : places_) {
        place = newPlaces[static_cast<size_t>(place)];
    }
    std::sort(places_.begin(), places_.end());
}

} // namespace quellbox
