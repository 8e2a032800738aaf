#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace quellbox {

/// True when a text may be added to the whitelist: it holds "@" and ".", no "*", and at least two characters after the
/// first "@". The "." may stand anywhere.
bool IsValidEntry(const QString& text);

/// Everything from the first "@" on; empty when there is none.
QString DomainPart(const QString& text);

/// The title of the question that DomainQuestion() words.
QString DomainQuestionTitle();

/// The question whether a whole domain shall take the place of its single addresses. `domainPart` begins with "@" and
/// is shown in upper case.
QString DomainQuestion(const QString& domainPart);

/// What became of an entry that was to be added.
struct AddResult {
    enum class Outcome {
        Refused,        ///< nothing changed: the text is blank, or the question about the domain was answered with No
        AlreadyPresent, ///< nothing changed: the address is listed at `index`
        Added           ///< the entry is the last one, at `index`
    };

    Outcome outcome = Outcome::Refused;
    int index = -1; ///< place of the entry in the list; -1 when refused
};

/// The list of tolerated senders while it is edited: single addresses, and whole domains that begin with "@".
class Whitelist {
public:
    Whitelist() = default;
    explicit Whitelist(QStringList entries);

    const QStringList& Entries() const { return entries_; }

    /// The entries that belong to a domain: those whose part after their own first "@" equals `text` without the "@"
    /// that it begins with. An entry without "@" is compared as a whole; an entry equal to `text` counts too.
    QStringList EntriesOfDomain(const QString& text) const;

    /// Adds a sender in lower case. A domain replaces all entries of that domain, after `confirmDomain` has agreed; it
    /// is asked once, with the domain part in upper case, and only when there are such entries. An address replaces the
    /// entry of its whole domain, without a question. Whether the text is valid is not asked here, only whether it is
    /// blank: an empty entry would tolerate everybody.
    AddResult Add(const QString& text, const std::function<bool(const QString& domainUpper)>& confirmDomain);

    /// Removes the entry at `index`; any other number changes nothing.
    void Remove(int index);

    void Clear();

private:
    QStringList entries_;
};

} // namespace quellbox
