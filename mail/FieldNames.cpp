#include "mail/FieldNames.h"

#include <algorithm>
#include <array>

namespace quellbox {

bool IsFieldName(const QString& text) {
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar character) {
        return character > u' ' && character <= u'~' && character != u':';
    });
}

QStringList SplitFieldNames(const QString& text) {
    QStringList names;
    for (const QString& name : text.split(QLatin1Char(','))) {
        if (!name.trimmed().isEmpty()) {
            names.append(name.trimmed());
        }
    }
    return names;
}

bool IsFieldOfMessage(const QByteArray& name) {
    static constexpr std::array<QByteArrayView, 17> names{"from",
                                                          "sender",
                                                          "reply-to",
                                                          "to",
                                                          "cc",
                                                          "bcc",
                                                          "subject",
                                                          "date",
                                                          "message-id",
                                                          "references",
                                                          "comments",
                                                          "keywords",
                                                          "received",
                                                          "dkim-signature",
                                                          "domainkey-signature",
                                                          "in-reply-to",
                                                          "return-receipt-to"};
    static constexpr std::array<QByteArrayView, 5> beginnings{"list-", "mime-", "content-", "resent-", "arc-"};
    const QByteArray lower = name.toLower();
    return std::find(names.begin(), names.end(), lower) != names.end() ||
           std::any_of(beginnings.begin(), beginnings.end(),
                       [&lower](QByteArrayView beginning) { return lower.startsWith(beginning); });
}

} // namespace quellbox
