#pragma once

#include <QString>

namespace quellbox {

/// A domain as the name system has it: in lower case, in ASCII (RFC 5891), without a dot at the end. Empty for what can
/// be none.
QString AsciiDomain(const QString& domain);

/// A domain as people read it, its labels decoded from Punycode (RFC 3492).
QString ReadableDomain(const QString& domain);

/// The domain that an organization has registered, by the list of public suffixes: "example.co.uk" of
/// "mail.example.co.uk". Of an address of the Internet Protocol, and of a public suffix, it is all of it.
QString OrganizationalDomain(const QString& domain);

/// Whether both belong to the same organization. False where one of them is empty.
bool AreOfOneOrganization(const QString& left, const QString& right);

/// Whether a text is a domain below a public suffix that the list names, and not merely words with a dot between.
bool IsRegistrableDomain(const QString& text);

} // namespace quellbox
