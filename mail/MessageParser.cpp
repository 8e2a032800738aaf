#include "mail/MessageParser.h"

#include "mail/DeclaredCharsets.h"
#include "mail/DisplayText.h"
#include "mail/GMimeStart.h"
#include "mail/HeaderDecoder.h"
#include "mail/HeaderScanner.h"
#include "mail/PartContent.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <memory>

namespace quellbox {

namespace {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
template <typename T>
using GMimePtr = std::unique_ptr<T, Unref>;

struct FreeOptions {
    void operator()(GMimeParserOptions* options) const { g_mime_parser_options_free(options); }
};
using OptionsPtr = std::unique_ptr<GMimeParserOptions, FreeOptions>;

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

QString AttachmentName(GMimeObject* part) {
    const char* name = g_mime_object_get_content_disposition_parameter(part, "filename");
    if (name == nullptr)
        name = g_mime_object_get_content_type_parameter(part, "name");
    return name == nullptr ? QString() : CleanseForDisplay(QString::fromUtf8(name));
}

QByteArray Content(GMimePart* part) {
    GMimeDataWrapper* content = g_mime_part_get_content(part);
    if (content == nullptr)
        return {};
    const GMimePtr<GMimeStream> stream(g_mime_stream_mem_new());
    g_mime_data_wrapper_write_to_stream(content, stream.get());
    const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
    return QByteArray(reinterpret_cast<const char*>(bytes->data), bytes->len);
}

/// What a part of text declares itself; null when it does not, or is no text.
const char* CharsetOf(GMimeObject* part) {
    if (!GMIME_IS_PART(part) || !g_mime_content_type_is_type(g_mime_object_get_content_type(part), "text", "*"))
        return nullptr;
    return g_mime_object_get_content_type_parameter(part, "charset");
}

QString PartText(GMimeObject* part, const CharsetEvidence& evidence) {
    // A multipart without a single part inside has all of its text before the first boundary.
    if (GMIME_IS_MULTIPART(part)) {
        const char* prologue = g_mime_multipart_get_prologue(GMIME_MULTIPART(part));
        return prologue == nullptr ? QString() : DecodeTextPart(prologue, {}, evidence);
    }
    if (!GMIME_IS_PART(part) || !g_mime_content_type_is_type(g_mime_object_get_content_type(part), "text", "*"))
        return {};
    const char* charset = CharsetOf(part);
    return DecodeTextPart(Content(GMIME_PART(part)), charset == nullptr ? "" : charset, evidence);
}

MessagePart MakePart(GMimeObject* part, const Fields& fields, const CharsetEvidence& evidence) {
    return {DecodeFields(fields, evidence), AttachmentName(part), PartText(part, evidence)};
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

/// Notes what the parts declare. As deep as leaves are collected, and no deeper.
void DeclareParts(GMimeObject* part, CharsetEvidence& evidence, int depth = 1) {
    if (const char* charset = CharsetOf(part))
        evidence.Declare(charset);
    if (!GMIME_IS_MULTIPART(part) || depth > kMaximumDepth)
        return;
    const int count = g_mime_multipart_get_count(GMIME_MULTIPART(part));
    for (int i = 0; i < count; ++i)
        DeclareParts(g_mime_multipart_get_part(GMIME_MULTIPART(part), i), evidence, depth + 1);
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

/// For parameters such as file names, which GMime decodes itself: what undeclared text may be in, the first that it can
/// be read in counts.
void SetFallbacks(GMimeParserOptions* options, const CharsetEvidence& evidence) {
    std::vector<const char*> fallbacks = {"utf-8"};
    for (const QByteArray& charset : evidence.Declared()) {
        if (!IsNamedWithoutThought(charset))
            fallbacks.push_back(charset.constData());
    }
    fallbacks.insert(fallbacks.end(), {"windows-1252", nullptr});
    g_mime_parser_options_set_fallback_charsets(options, fallbacks.data());
}

GMimePtr<GMimeMessage> RunParser(const QByteArray& bytes, const CharsetEvidence& evidence) {
    StartGMime();
    const OptionsPtr options(g_mime_parser_options_new());
    SetFallbacks(options.get(), evidence);
    const GMimePtr<GMimeStream> stream(
        g_mime_stream_mem_new_with_buffer(bytes.constData(), static_cast<size_t>(bytes.size())));
    const GMimePtr<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    return GMimePtr<GMimeMessage>(g_mime_parser_construct_message(parser.get(), options.get()));
}

} // namespace

LoadError ParseMessage(const QByteArray& bytes, std::vector<HeaderField>& headers, std::vector<MessagePart>& parts) {
    if (bytes.isEmpty())
        return LoadError::Empty;
    // What a message is, the scanner decides: the list and the structure tree must agree on it.
    const WantedFields none;
    HeaderScanner scanner(none);
    const QByteArrayView block = QByteArrayView(bytes).first(std::min(bytes.size(), kMaximumHeaderBytes));
    switch (scanner.Scan(block, bytes.size() <= kMaximumHeaderBytes)) {
    case HeaderScanner::Result::NoMessage:
        return LoadError::NoHeaderField;
    case HeaderScanner::Result::NeedsMore:
        return scanner.HeaderStart() < 0 ? LoadError::NoHeaderField : LoadError::HeaderTooLarge;
    case HeaderScanner::Result::Complete:
        break;
    }
    QByteArray input = bytes.sliced(scanner.HeaderStart());
    // GMime gives up on a file that ends within a field name; with a blank line it takes what came before.
    if (scanner.HeaderEnd() == bytes.size())
        input.append(input.endsWith('\n') ? "\n" : "\n\n");
    // GMime's texts end at a NUL; another control byte in its place keeps the rest of the value.
    std::replace(input.begin(), input.begin() + (scanner.HeaderEnd() - scanner.HeaderStart()), '\0', '\x01');
    const CharsetEvidence evidence(block.sliced(scanner.HeaderStart(), scanner.HeaderEnd() - scanner.HeaderStart()));
    const GMimePtr<GMimeMessage> message = RunParser(input, evidence);
    if (message == nullptr)
        return LoadError::NoHeaderField;
    return TakeApart(message.get(), evidence, headers, parts);
}

} // namespace quellbox
