#pragma once

#include <QString>

#include <utility>
#include <vector>

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
    void AddAddress(QStringView localPart);
    void AddWord(QStringView word, qsizetype shortest);

    QString text_; ///< of the recipients that were read last
    QString words_;
    std::vector<std::pair<qsizetype, qsizetype>> places_; ///< begin and length of each word in words_
};

/// Appends the letters and digits of a text, in lower case.
void AppendLetters(QStringView text, QString& to);

} // namespace quellbox
