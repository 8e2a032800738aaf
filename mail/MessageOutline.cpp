#include "mail/MessageOutline.h"

#include "mail/GMimeObjects.h"
#include "mail/HeaderDecoder.h"
#include "mail/MessageParser.h"

#include <algorithm>

namespace quellbox {

namespace {

using PartKind = OutlinePart::Kind;

constexpr qsizetype keptOfAttachment = 64 * 1024;

RawFieldList OutlineFieldsOf(GMimeObject* object) {
    RawFieldList fields;
    GMimeHeaderList* list = g_mime_object_get_header_list(object);
    const int count = std::min(g_mime_header_list_get_count(list), kMaximumFields);
    for (int i = 0; i < count; ++i) {
        GMimeHeader* field = g_mime_header_list_get_header_at(list, i);
        const char* raw = g_mime_header_get_raw_value(field);
        fields.push_back({g_mime_header_get_name(field), raw == nullptr ? "" : raw});
    }
    return fields;
}

QByteArray TypeOf(GMimeObject* part) {
    GMimeContentType* type = g_mime_object_get_content_type(part);
    return (QByteArray(g_mime_content_type_get_media_type(type)) + '/' + g_mime_content_type_get_media_subtype(type))
        .toLower();
}

bool IsDeclaredAttachment(GMimeObject* part) {
    const char* disposition = g_mime_object_get_disposition(part);
    return disposition != nullptr && qstricmp(disposition, "attachment") == 0;
}

bool IsBlankText(QByteArrayView text) {
    return text.trimmed().isEmpty();
}

/// Bytes of an object as it stands in the message.
qint64 SizeOf(GMimeObject* object) {
    GMimeStream* counter = g_mime_stream_null_new();
    g_mime_object_write_to_stream(object, nullptr, counter);
    const qint64 size = g_mime_stream_tell(counter);
    g_object_unref(counter);
    return size;
}

/// Walks through the parts, depth first. Recursion is bounded by kMaximumDepth.
class OutlineBuilder {
public:
    explicit OutlineBuilder(MessageOutline& outline) : outline_(outline) {}

    void AddMessage(GMimeMessage* message, int level, int depth) {
        if (GMimeObject* body = g_mime_message_get_mime_part(message)) {
            Add(body, level, depth, true);
        }
    }

private:
    void Add(GMimeObject* part, int level, int depth, bool isOnly) {
        if (depth > kMaximumDepth || outline_.parts.size() >= static_cast<size_t>(kMaximumParts)) {
            outline_.isCut = true;
        } else if (GMIME_IS_MULTIPART(part)) {
            AddMultipart(GMIME_MULTIPART(part), level, depth);
        } else if (GMIME_IS_MESSAGE_PART(part)) {
            AddAttachedMessage(GMIME_MESSAGE_PART(part), level, depth);
        } else if (GMIME_IS_PART(part)) {
            AddLeaf(GMIME_PART(part), level, isOnly);
        }
    }

    void AddMultipart(GMimeMultipart* multipart, int level, int depth) {
        const size_t first = outline_.parts.size();
        const int count = g_mime_multipart_get_count(multipart);
        for (int i = 0; i < count; ++i) {
            Add(g_mime_multipart_get_part(multipart, i), level, depth + 1, false);
        }
        const char* prologue = g_mime_multipart_get_prologue(multipart);
        if (count == 0 && prologue != nullptr) { // all of its text stands before the first boundary
            AddText({.kind = PartKind::Plain, .level = level, .type = "text/plain", .content = prologue});
        }
        if (TypeOf(GMIME_OBJECT(multipart)) == "multipart/alternative") {
            Choose(first);
        }
    }

    /// Leaves one of the alternatives that begin there: the plain texts, or else the first text that is HTML.
    void Choose(size_t first) {
        const auto begin = outline_.parts.begin() + static_cast<std::ptrdiff_t>(first);
        const bool hasPlain = std::any_of(begin, outline_.parts.end(), [](const OutlinePart& part) {
            return part.kind == PartKind::Plain && part.isShown && !part.isBlank;
        });
        bool hasHtml = hasPlain;
        for (auto part = begin; part != outline_.parts.end(); ++part) {
            if (part->kind == PartKind::Html) {
                part->isShown = part->isShown && !hasHtml;
                hasHtml = true;
            }
        }
    }

    void AddAttachedMessage(GMimeMessagePart* part, int level, int depth) {
        GMimeMessage* message = g_mime_message_part_get_message(part);
        if (message == nullptr || level >= kMaximumAttachedLevels) {
            const QString name = DeclaredFileName(GMIME_OBJECT(part), outline_.evidence);
            outline_.parts.push_back({.level = level,
                                      .type = TypeOf(GMIME_OBJECT(part)),
                                      .fileName = name,
                                      .size = message == nullptr ? 0 : SizeOf(GMIME_OBJECT(message))});
            return;
        }
        outline_.parts.push_back(
            {.kind = PartKind::Head, .level = level, .fields = OutlineFieldsOf(GMIME_OBJECT(message))});
        AddMessage(message, level + 1, depth + 1);
    }

    void AddLeaf(GMimePart* leaf, int level, bool isOnly) {
        GMimeObject* object = GMIME_OBJECT(leaf);
        OutlinePart part{
            .level = level, .type = TypeOf(object), .fileName = DeclaredFileName(object, outline_.evidence)};
        part.content = PartBytes(leaf);
        part.size = part.content.size();
        const bool isText = part.type == "text/plain" || part.type == "text/html";
        const bool isListed = !isOnly && !part.fileName.isEmpty();
        if (isText && !IsDeclaredAttachment(object)) {
            OutlinePart listed = part;
            AddText(ReadableOf(object, std::move(part)));
            if (isListed) {
                AddAttachment(std::move(listed));
            }
        } else if (part.size > 0 || !part.fileName.isEmpty()) {
            AddAttachment(std::move(part));
        }
    }

    static OutlinePart ReadableOf(GMimeObject* object, OutlinePart part) {
        part.kind = part.type == "text/html" ? PartKind::Html : PartKind::Plain;
        part.charset = g_mime_object_get_content_type_parameter(object, "charset");
        return part;
    }

    void AddAttachment(OutlinePart part) {
        part.content = part.content.first(std::min(keptOfAttachment, part.content.size()));
        part.content.squeeze();
        outline_.parts.push_back(std::move(part));
    }

    void AddText(OutlinePart part) {
        part.size = part.content.size();
        part.isBlank = IsBlankText(part.content);
        outline_.parts.push_back(std::move(part));
    }

    MessageOutline& outline_;
};

} // namespace

QString RawFieldText(const RawFieldList& fields, QByteArrayView name, const CharsetEvidence& evidence) {
    const auto found = std::find_if(fields.begin(), fields.end(), [name](const RawField& field) {
        return name.compare(field.name, Qt::CaseInsensitive) == 0;
    });
    return found == fields.end() ? QString() : DecodeHeaderValue(found->value, evidence);
}

LoadError ReadOutline(const QByteArray& bytes, MessageOutline& outline) {
    outline = {};
    OpenedMessage opened;
    const LoadError error = OpenMessage(bytes, opened);
    if (error != LoadError::None) {
        return error;
    }
    outline.evidence = opened.ofHeader;
    if (GMimeObject* body = g_mime_message_get_mime_part(opened.message.get())) {
        DeclareParts(body, outline.evidence);
    }
    outline.fields = OutlineFieldsOf(GMIME_OBJECT(opened.message.get()));
    OutlineBuilder(outline).AddMessage(opened.message.get(), 0, 1);
    return LoadError::None;
}

} // namespace quellbox
