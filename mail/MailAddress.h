#pragma once

#include "mail/CharsetEvidence.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace quellbox {

/// An address of a header field (RFC 5322, section 3.4).
struct MailAddress {
    QString name;    ///< the display name, decoded and cleansed; may be empty
    QString address; ///< as in "a@example.org"

    /// What follows the last "@"; empty where there is none.
    QString Domain() const;
};

/// The addresses in the raw value of a header field, those of groups included; no more than the first hundred. Bytes
/// that declare no character set are read by what the message tells.
std::vector<MailAddress> ReadAddresses(QByteArrayView raw, const CharsetEvidence& evidence = CharsetEvidence());

} // namespace quellbox
