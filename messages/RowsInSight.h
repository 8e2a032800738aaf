#pragma once

#include "messages/FoldedRows.h"
#include "messages/QuickFilter.h"

#include <vector>

namespace quellbox {

/// Which rows of the list are in sight: all of them, or those that hold the words of a filter. A place is the number of
/// a row among all rows, a row its number among those in sight, which keep their order.
class RowsInSight {
public:
    const QuickFilter& Filter() const { return filter_; }
    bool IsNarrowed() const { return !filter_.IsEmpty(); }

    /// How many of `total` rows are in sight.
    int Count(int total) const { return IsNarrowed() ? static_cast<int>(places_.size()) : total; }

    int PlaceOf(int row) const { return IsNarrowed() ? places_[static_cast<size_t>(row)] : row; }

    /// The row at a place; -1 when it is out of sight.
    int RowAt(int place) const;

    /// The row that a place out of sight would have.
    int RowFor(int place) const;

    /// The places that a filter leaves in sight, ascending. A narrower filter than the present one looks only at what
    /// is in sight now.
    std::vector<int> PlacesFor(const QuickFilter& filter, const FoldedRows& texts) const;

    /// True when the same of `total` rows are in sight here and there.
    bool ShowsTheSame(const RowsInSight& other, int total) const;

    /// Takes a filter with the places that it leaves in sight.
    void Show(const QuickFilter& filter, std::vector<int> places);

    /// A row has come into sight. Like what follows, this is only for rows that are narrowed.
    void Add(int place);

    /// The rows at ascending places have gone.
    void Remove(const std::vector<int>& places);

    /// The rows have another order: `newPlaces` says where the row of each place is now.
    void Reorder(const std::vector<int>& newPlaces);

    /// There are no rows any more.
    void RemoveAll() { places_.clear(); }

private:
    QuickFilter filter_;
    std::vector<int> places_; // ascending; empty while all rows are in sight
};

} // namespace quellbox
