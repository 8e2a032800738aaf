#include "mail/MailMessage.h"

#include "mail/MessageParser.h"
#include "platform/RuntimeError.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <array>

namespace quellbox {

struct MailMessage::Content {
    ParsedMessage message;
    QString errorText;
};

MailMessage::MailMessage() : content_(std::make_unique<Content>()) {}

MailMessage::~MailMessage() = default;

QString MailMessage::VersionText() {
    return QStringLiteral("GMime %1.%2.%3").arg(gmime_major_version).arg(gmime_minor_version).arg(gmime_micro_version);
}

void MailMessage::Reset() {
    *content_ = {};
}

int MailMessage::Load(const FileSystem& files, const QString& path) {
    Reset();
    try {
        return LoadBytes(ReadWhole(files, path));
    } catch (const RuntimeError& error) {
        content_->message.error = LoadError::Unreadable;
        content_->errorText = error.Text();
        return static_cast<int>(LoadError::Unreadable);
    }
}

int MailMessage::LoadBytes(const QByteArray& bytes) {
    Reset();
    content_->message = ParseMessage(bytes);
    content_->errorText = LoadErrorText(content_->message.error);
    return static_cast<int>(content_->message.error);
}

QString MailMessage::LastErrorText() const {
    return content_->errorText;
}

std::optional<QString> MailMessage::Header(const QString& name) const {
    const auto& headers = content_->message.headers;
    const auto found = std::find_if(headers.begin(), headers.end(), [&](const auto& header) {
        return header.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == headers.end() ? std::nullopt : std::optional(found->second);
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

const std::vector<MessagePart>& MailMessage::Parts() const {
    return content_->message.parts;
}

} // namespace quellbox
