#pragma once

#include <QString>

#include <array>

namespace quellbox {

/// The words by which mails address a recipient: those of the display name, and the local part of the address with its
/// pieces. A mailbox that is called after its purpose, such as "info", has no name of anybody. It is made once and
/// filled again and again, so that it needs no memory in the long run.
class RecipientNames {
public:
    /// Takes the names of a text of the column "To"; of a long list of recipients only the first ones.
    void Read(QStringView recipients);

    /// Whether a word is one of them. It is in lower case and holds letters and digits only.
    bool Contains(QStringView word) const;

private:
    /// A name in letters_.
    struct Place {
        qsizetype begin = 0;
        qsizetype length = 0;
    };

    static constexpr qsizetype longestText = 300;
    static constexpr size_t mostNames = 16;

    void AddAddress(QStringView localPart);
    void AddWord(QStringView word, qsizetype shortest);

    QString text_;                                            ///< of the recipients that were read last
    std::array<char16_t, size_t{2 * longestText}> letters_{}; ///< of the names; an address is there whole and in pieces
    qsizetype used_ = 0;
    std::array<Place, mostNames> places_{};
    size_t count_ = 0;
};

/// Writes the letters and digits of a text, in lower case, and returns their end. There has to be room for as many
/// characters as the text has.
char16_t* WriteLetters(QStringView text, char16_t* to);

} // namespace quellbox
