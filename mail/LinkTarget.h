#pragma once

#include <QString>

namespace quellbox {

/// Where a link leads, as a browser understands its address (WHATWG URL, as far as the host goes).
struct LinkTarget {
    QString host; ///< in lower case, percent signs decoded; empty where it leads to no host
    QString user; ///< what stands before an "@" in front of the host, and is mistaken for it
};

/// Reads the address of a link: of http, https and ftp, or without a scheme as in "//example.org".
LinkTarget ReadLinkTarget(const QString& address);

/// The host that a text shows as the place of a link: of an address of the web, or of a text that is a domain, perhaps
/// with a path behind it. Empty where it shows none, as in "Click here", "readme.txt" or what IsKnownAsNoDomain() says.
QString HostShownBy(const QString& text);

} // namespace quellbox
