#include "whitelist/WhitelistRules.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>
#include <utility>

namespace quellbox {
namespace {

/// Whether an entry belongs to the domain whose name (without "@") is given.
bool BelongsToDomain(const QString& entry, QStringView domainName) {
    // Without an "@" the search gives -1, so that the whole entry is compared.
    return QStringView(entry).mid(entry.indexOf(QLatin1Char('@')) + 1) == domainName;
}

} // namespace

bool IsValidEntry(const QString& text) {
    const qsizetype at = text.indexOf(QLatin1Char('@'));
    return at >= 0 && text.contains(QLatin1Char('.')) && !text.contains(QLatin1Char('*')) && text.size() > at + 2;
}

QString DomainPart(const QString& text) {
    const qsizetype at = text.indexOf(QLatin1Char('@'));
    return at < 0 ? QString() : text.mid(at);
}

QString DomainQuestionTitle() {
    return QCoreApplication::translate("quellbox", "Tolerate entire domain");
}

QString DomainQuestion(const QString& domainPart) {
    const QString blankLine = QStringLiteral("\r\n\r\n");
    return QCoreApplication::translate("quellbox", "Individual addresses for users at ") + blankLine +
           domainPart.toUpper() + blankLine +
           QCoreApplication::translate("quellbox", "will be removed from the list of tolerated users.") + blankLine +
           QCoreApplication::translate("quellbox",
                                       "Every sender from this domain is going to be tolerated from now on.");
}

Whitelist::Whitelist(QStringList entries) : entries_(std::move(entries)) {}

QStringList Whitelist::EntriesOfDomain(const QString& text) const {
    const QStringView name = QStringView(text).mid(1);
    QStringList found;
    std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(found),
                 [&](const QString& entry) { return BelongsToDomain(entry, name); });
    return found;
}

AddResult Whitelist::Add(const QString& text, const std::function<bool(const QString& domainUpper)>& confirmDomain) {
    const QString entry = text.toLower();
    if (entry.trimmed().isEmpty()) {
        return {};
    }
    const QString domain = DomainPart(entry);
    if (entry.startsWith(QLatin1Char('@'))) {
        if (!EntriesOfDomain(entry).isEmpty()) {
            if (!confirmDomain(domain.toUpper())) {
                return {};
            }
            const QStringView name = QStringView(entry).mid(1);
            entries_.removeIf([&](const QString& listed) { return BelongsToDomain(listed, name); });
        }
    } else {
        const qsizetype present = entries_.indexOf(entry);
        if (present >= 0) {
            return {AddResult::Outcome::AlreadyPresent, int(present)};
        }
        // Deliberate: tolerating one address of a tolerated domain replaces the domain by that address.
        if (!domain.isEmpty()) {
            entries_.removeOne(domain);
        }
    }
    entries_.append(entry);
    return {AddResult::Outcome::Added, int(entries_.size() - 1)};
}

void Whitelist::Remove(int index) {
    if (index >= 0 && index < entries_.size()) {
        entries_.removeAt(index);
    }
}

void Whitelist::Clear() {
    entries_.clear();
}

} // namespace quellbox
