#include "mail/MailMessage.h"

#include "mail/MessageParser.h"
#include "platform/RuntimeError.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <array>

namespace quellbox {

QString MailMessage::VersionText() {
    return QStringLiteral("GMime %1.%2.%3").arg(gmime_major_version).arg(gmime_minor_version).arg(gmime_micro_version);
}

int MailMessage::Load(const FileSystem& files, const QString& path) {
    try {
        return LoadBytes(ReadWhole(files, path));
    } catch (const RuntimeError& error) {
        return Fail(LoadError::Unreadable, error.Text());
    }
}

int MailMessage::LoadBytes(const QByteArray& bytes) {
    Reset();
    const LoadError error = ParseMessage(bytes, headers_, parts_);
    return error == LoadError::None ? 0 : Fail(error, LoadErrorText(error));
}

int MailMessage::Fail(LoadError error, const QString& text) {
    Reset();
    errorText_ = text;
    return static_cast<int>(error);
}

std::optional<QString> MailMessage::Header(const QString& name) const {
    const auto found = std::find_if(headers_.begin(), headers_.end(), [&](const HeaderField& header) {
        return header.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == headers_.end() ? std::nullopt : std::optional(found->second);
}

QStringList MailMessage::Headers(const QString& name) const {
    QStringList values;
    for (const HeaderField& header : headers_) {
        if (header.first.compare(name, Qt::CaseInsensitive) == 0) {
            values.append(header.second);
        }
    }
    return values;
}

QString MailMessage::Recipient() const {
    return Header(QStringLiteral("To")).value_or(QString());
}

QString MailMessage::Sender() const {
    return Header(QStringLiteral("From")).value_or(QString());
}

QString MailMessage::Subject() const {
    return Header(QStringLiteral("Subject")).value_or(QString());
}

QString MailMessage::Property(const QString& name) const {
    static const std::array<QLatin1String, 6> kNames = {QLatin1String("date"), QLatin1String("from"),
                                                        QLatin1String("to"),   QLatin1String("cc"),
                                                        QLatin1String("bcc"),  QLatin1String("subject")};
    const bool known = std::any_of(kNames.begin(), kNames.end(),
                                   [&](QLatin1String each) { return name.compare(each, Qt::CaseInsensitive) == 0; });
    return known ? Header(name).value_or(QString()) : QString();
}

} // namespace quellbox
