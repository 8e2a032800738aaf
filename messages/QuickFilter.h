#pragma once

#include <QStringList>
#include <QStringMatcher>

#include <vector>

namespace quellbox {

/// The words that a row has to hold to be in sight, each of them anywhere in what the row shows, in either case.
class QuickFilter {
public:
    QuickFilter() = default;

    /// The words of a typed text, which blanks separate.
    explicit QuickFilter(const QString& text);

    /// Without words every row is in sight.
    bool IsEmpty() const { return words_.isEmpty(); }

    /// `folded` is a text of FoldedRows.
    bool Matches(QStringView folded) const;

    /// True when no row can match this filter that does not match the other one, as when a word gets longer.
    bool IsWithin(const QuickFilter& other) const;

    bool operator==(const QuickFilter& other) const { return words_ == other.words_; }

private:
    /// A single letter is found several times as fast as a word of one letter would be.
    struct Word {
        QChar first;
        bool isLetter = false;
        QStringMatcher matcher;
    };

    QStringList words_; // folded; none is part of another one
    std::vector<Word> sought_;
};

} // namespace quellbox
