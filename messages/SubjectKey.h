#pragma once

#include "messages/RecipientNames.h"

#include <QString>

#include <array>

namespace quellbox {

/// Tells which subjects are one and the same but for what is written anew for each message: numbers and codes (words
/// with a digit), addresses, and the names of the recipient. Prefixes such as "Re:" and "Fw:", punctuation and upper
/// and lower case make no difference either. Of a long subject the first 1,000 characters count.
///
/// An object is made once and asked again and again, so that it needs no memory in the long run.
class SubjectKey {
public:
    /// What such subjects have in common: the words that stay, in lower case, and U+2026 for one or several in a row
    /// that change. `recipients` is the text of the column "To". Lent until the next call.
    const QString& Of(QStringView subject, QStringView recipients);

    /// Whether a subject has that key. Most that have not are told by their first words.
    bool Is(QStringView key, QStringView subject, QStringView recipients);

    /// The subject as people read it, without prefixes, and with U+2026 where words change.
    QString Title(QStringView subject, QStringView recipients);

private:
    static constexpr qsizetype longestSubject = 1000;

    static QStringView Counted(QStringView subject);
    template <class GoesOn>
    QStringView Write(QStringView text, GoesOn goesOn);
    bool IsChanging(QStringView word, QStringView letters) const;

    RecipientNames names_;
    QString key_;
    std::array<char16_t, size_t{2 * longestSubject + 2}> letters_{}; ///< of the words and what divides them
};

} // namespace quellbox
