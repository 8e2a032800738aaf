#pragma once

#include "messages/FoldedRows.h"
#include "messages/QuickFilter.h"

#include <vector>

namespace quellbox {

/// Which rows of the list are in sight: all of them, or those that hold the words of a filter. A place is the number of
/// a row among all rows, a row its number among those in sight, which keep their order. It is told whatever happens to
/// the list, and holds no rows itself.
class RowsInSight {
public:
    bool IsNarrowed() const { return !filter_.IsEmpty(); }

    /// How many of `total` rows are in sight.
    int Count(int total) const { return IsNarrowed() ? static_cast<int>(places_.size()) : total; }

    int PlaceOf(int row) const { return IsNarrowed() ? places_[static_cast<size_t>(row)] : row; }
    std::vector<int> PlacesOf(std::vector<int> rows) const;

    /// The row at a place; -1 when it is out of sight.
    int RowAt(int place) const;

    /// What other rows would be in sight for a filter. A narrower filter than the present one looks only at what is in
    /// sight now.
    const QuickFilter& Filter() const { return filter_; }
    std::vector<int> PlacesFor(const QuickFilter& filter, const std::vector<MessageRow>& rows);

    /// True when a filter that leaves these places in sight would change nothing.
    bool IsShown(const QuickFilter& filter, const std::vector<int>& places, int total) const;

    /// Takes a filter with the places that it leaves in sight.
    void Show(const QuickFilter& filter, std::vector<int> places);

    /// Makes up to `most` further rows ready to be looked at. True while rows are left.
    bool Prepare(const std::vector<MessageRow>& rows, int most);

    /// Gives back the memory that this takes, unless the list is narrowed.
    void Forget();

    /// Rows will be appended; gives the places that come into sight, where the list is narrowed.
    std::vector<int> PlacesOfNew(const std::vector<MessageRow>& rows);

    /// A place that has come into sight. Only for a narrowed list.
    void Add(int place);

    /// A row has other contents now. It stays in sight, or out of it, until another filter comes.
    void Put(int place, const MessageRow& row);

    /// The rows at ascending places of `total` go.
    void Remove(const std::vector<int>& places, int total);

    /// All rows go.
    void RemoveAll();

    /// The rows get another order. `sequence` says for each place where its row was, and `newPlaces` the other way
    /// round.
    void Reorder(const std::vector<int>& sequence, const std::vector<int>& newPlaces);

private:
    int RowFor(int place) const;
    void ForgetUnfinished(int total);

    QuickFilter filter_;
    std::vector<int> places_; // ascending; empty while all rows are in sight
    bool hasLate_ = false;    // a row out of sight matches by now
    FoldedRows folded_;       // of the first rows; of all of them while the list is narrowed
};

} // namespace quellbox
