#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <utility>

/// How many undeclared texts of one kind are read right.
struct CharsetShare {
    int all = 0;
    int before = 0;   ///< as UTF-8 or Windows-1252
    int guessed = 0;  ///< with nothing declared anywhere
    int declared = 0; ///< with what else the message declares
    int apart = 0;    ///< of those that the last column counts: the message declares nothing else
};

/// Shares by character set and language or kind of text.
class CharsetTally {
public:
    using Key = std::pair<QByteArray, QByteArray>;

    /// The row to count in. A row that holds nothing is not printed.
    CharsetShare& Row(const QByteArray& charset, const QByteArray& kind) { return rows_[{charset.toLower(), kind}]; }

    void Print(const char* title) const;

    /// Whether texts in Windows-1252 are read as often right as before, but for one in `tolerated`.
    bool KeepsWestern(int tolerated) const;

private:
    std::map<Key, CharsetShare> rows_;
};
