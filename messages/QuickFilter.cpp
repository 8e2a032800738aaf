#include "messages/QuickFilter.h"

#include "messages/FoldCase.h"

#include <algorithm>

namespace quellbox {

QuickFilter::QuickFilter(const QString& text) {
    QString folded = text.simplified();
    FoldCase(folded.data(), folded.data() + folded.size());
    QStringList words = folded.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    // The longest one first: it leaves the fewest rows for the others.
    std::stable_sort(words.begin(), words.end(),
                     [](const QString& left, const QString& right) { return left.size() > right.size(); });
    for (const QString& word : words) {
        const auto holdsWord = [&word](const QString& longer) { return longer.contains(word); };
        if (std::none_of(words_.cbegin(), words_.cend(), holdsWord)) {
            words_.append(word);
            sought_.push_back({word.front(), word.size() == 1, QStringMatcher(word)});
        }
    }
}

bool QuickFilter::Matches(QStringView folded) const {
    return std::all_of(sought_.begin(), sought_.end(), [folded](const Word& word) {
        return word.isLetter ? folded.contains(word.first) : word.matcher.indexIn(folded) >= 0;
    });
}

bool QuickFilter::IsWithin(const QuickFilter& other) const {
    return std::all_of(other.words_.cbegin(), other.words_.cend(), [this](const QString& wanted) {
        return std::any_of(words_.cbegin(), words_.cend(),
                           [&wanted](const QString& word) { return word.contains(wanted); });
    });
}

} // namespace quellbox
