#include "mail/MessageParser.h"

#include "mail/DisplayText.h"
#include "mail/GMimeObjects.h"
#include "mail/HeaderDecoder.h"
#include "mail/PartContent.h"

#include <algorithm>

namespace quellbox {

namespace {

using Fields = std::vector<GMimeHeader*>;

void AddFields(GMimeObject* object, Fields& fields) {
    GMimeHeaderList* list = g_mime_object_get_header_list(object);
    const int count = g_mime_header_list_get_count(list);
    for (int i = 0; i < count; ++i)
        fields.push_back(g_mime_header_list_get_header_at(list, i));
}

/// A field name as text. It is no text to be decoded or trimmed (RFC 5322 has printable ASCII only): what else is in it
/// is made visible, so that no deviant name can pass for that of another field.
QString NameText(const char* name) {
    QString text = QString::fromLatin1(name);
    const auto deviant = [](QChar c) { return c <= QLatin1Char(' ') || c >= QLatin1Char('\x7F'); };
    std::replace_if(text.begin(), text.end(), deviant, QChar(QChar::ReplacementCharacter));
    return text;
}

std::vector<HeaderField> DecodeFields(const Fields& fields, const CharsetEvidence& evidence) {
    std::vector<HeaderField> decoded;
    for (GMimeHeader* field : fields) {
        const char* raw = g_mime_header_get_raw_value(field);
        QString name = NameText(g_mime_header_get_name(field));
        if (!name.isEmpty())
            decoded.emplace_back(std::move(name), DecodeHeaderValue(raw == nullptr ? "" : raw, evidence));
    }
    return decoded;
}

/// The fields of the whole message. GMime keeps the Content-* fields with the outermost part; here they return to
/// their places in the file.
Fields MessageFields(GMimeMessage* message) {
    Fields fields;
    AddFields(GMIME_OBJECT(message), fields);
    if (GMimeObject* part = g_mime_message_get_mime_part(message))
        AddFields(part, fields);
    std::stable_sort(fields.begin(), fields.end(), [](GMimeHeader* left, GMimeHeader* right) {
        return g_mime_header_get_offset(left) < g_mime_header_get_offset(right);
    });
    return fields;
}

QString AttachmentName(GMimeObject* part, const CharsetEvidence& evidence) {
    return CleanseForDisplay(DeclaredFileName(part, evidence));
}

QString PartText(GMimeObject* part, const CharsetEvidence& evidence) {
    // A multipart without a single part inside has all of its text before the first boundary.
    if (GMIME_IS_MULTIPART(part)) {
        const char* prologue = g_mime_multipart_get_prologue(GMIME_MULTIPART(part));
        return prologue == nullptr ? QString() : DecodeTextPart(prologue, {}, evidence);
    }
    if (!GMIME_IS_PART(part) || !g_mime_content_type_is_type(g_mime_object_get_content_type(part), "text", "*"))
        return {};
    const char* charset = DeclaredCharset(part);
    return DecodeTextPart(PartBytes(GMIME_PART(part)), charset == nullptr ? "" : charset, evidence);
}

MessagePart MakePart(GMimeObject* part, const Fields& fields, const CharsetEvidence& evidence) {
    return {DecodeFields(fields, evidence), AttachmentName(part, evidence), PartText(part, evidence)};
}

/// True when the only entity of a message has no content at all.
bool IsBodyless(GMimeObject* part) {
    if (GMIME_IS_MULTIPART(part)) {
        const char* prologue = g_mime_multipart_get_prologue(GMIME_MULTIPART(part));
        return prologue == nullptr || *prologue == '\0';
    }
    if (GMIME_IS_MESSAGE_PART(part))
        return g_mime_message_part_get_message(GMIME_MESSAGE_PART(part)) == nullptr;
    GMimeDataWrapper* content = GMIME_IS_PART(part) ? g_mime_part_get_content(GMIME_PART(part)) : nullptr;
    GMimeStream* stream = content == nullptr ? nullptr : g_mime_data_wrapper_get_stream(content);
    return stream == nullptr || g_mime_stream_length(stream) <= 0;
}

bool IsLeaf(GMimeObject* part) {
    return !GMIME_IS_MULTIPART(part) || g_mime_multipart_get_count(GMIME_MULTIPART(part)) == 0;
}

/// Collects the leaves of a multipart, depth first. Recursion is bounded by kMaximumDepth.
class LeafCollector {
public:
    LeafCollector(std::vector<MessagePart>& parts, size_t fieldCount, const CharsetEvidence& evidence)
        : parts_(parts), fieldCount_(fieldCount), evidence_(evidence) {}

    LoadError Collect(GMimeMultipart* multipart, int depth) {
        if (depth > kMaximumDepth)
            return LoadError::TooDeep;
        const int count = g_mime_multipart_get_count(multipart);
        LoadError error = LoadError::None;
        for (int i = 0; i < count && error == LoadError::None; ++i) {
            GMimeObject* part = g_mime_multipart_get_part(multipart, i);
            error = IsLeaf(part) ? Add(part) : Collect(GMIME_MULTIPART(part), depth + 1);
        }
        return error;
    }

private:
    LoadError Add(GMimeObject* part) {
        Fields fields;
        AddFields(part, fields);
        fieldCount_ += fields.size();
        if (fieldCount_ > static_cast<size_t>(kMaximumFields))
            return LoadError::TooManyFields;
        if (parts_.size() >= static_cast<size_t>(kMaximumParts))
            return LoadError::TooManyParts;
        parts_.push_back(MakePart(part, fields, evidence_));
        return LoadError::None;
    }

    std::vector<MessagePart>& parts_;
    size_t fieldCount_;
    const CharsetEvidence& evidence_;
};

/// `ofHeader` is what the header block tells: the list, which reads nothing else, must show the same fields.
LoadError TakeApart(GMimeMessage* message, const CharsetEvidence& ofHeader, std::vector<HeaderField>& headers,
                    std::vector<MessagePart>& parts) {
    const Fields fields = MessageFields(message);
    if (fields.size() > static_cast<size_t>(kMaximumFields))
        return LoadError::TooManyFields;
    headers = DecodeFields(fields, ofHeader);
    GMimeObject* body = g_mime_message_get_mime_part(message);
    if (body == nullptr)
        return LoadError::None;
    if (!IsLeaf(body)) {
        CharsetEvidence ofMessage = ofHeader;
        DeclareParts(body, ofMessage);
        return LeafCollector(parts, fields.size(), ofMessage).Collect(GMIME_MULTIPART(body), 1);
    }
    if (!IsBodyless(body))
        parts.push_back(MakePart(body, fields, ofHeader));
    return LoadError::None;
}

} // namespace

LoadError ParseMessage(const QByteArray& bytes, std::vector<HeaderField>& headers, std::vector<MessagePart>& parts) {
    OpenedMessage opened;
    const LoadError error = OpenMessage(bytes, opened);
    return error == LoadError::None ? TakeApart(opened.message.get(), opened.ofHeader, headers, parts) : error;
}

} // namespace quellbox
