#include "mail/GMimeObjects.h"

#include "mail/DeclaredCharsets.h"
#include "mail/GMimeStart.h"
#include "mail/HeaderScanner.h"
#include "mail/MessageParser.h"

#include <algorithm>
#include <vector>

namespace quellbox {

namespace {

struct FreeOptions {
    void operator()(GMimeParserOptions* options) const { g_mime_parser_options_free(options); }
};
using OptionsPtr = std::unique_ptr<GMimeParserOptions, FreeOptions>;

/// For parameters, which GMime decodes itself: what undeclared text may be in, the first that it can be read in counts.
/// What is not declared in the header block is read as Windows-1252; of file names see ParameterText().
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

/// A parameter of a header field, as GMime has decoded it.
struct Parameter {
    GMimeObject* part;
    const char* field;
    const char* name;
    const char* text;
};

/// The last field of a name in the header of a part, whose parameters count for GMime.
QByteArray LastField(GMimeObject* part, const char* name) {
    GMimeHeaderList* headers = g_mime_object_get_header_list(part);
    for (int i = g_mime_header_list_get_count(headers) - 1; i >= 0; --i) {
        GMimeHeader* header = g_mime_header_list_get_header_at(headers, i);
        if (qstricmp(g_mime_header_get_name(header), name) == 0)
            return QByteArray(g_mime_header_get_raw_value(header)).replace("\r", "").replace("\n", "");
    }
    return {};
}

/// The bytes of a parameter. Where it is in one piece and has no encoded words, they stay as they are.
QByteArray ParameterBytes(QByteArrayView field, const char* name) {
    const QByteArray parameters = field.sliced(field.indexOf(';') + 1).toByteArray();
    const GMimePtr<GMimeParamList> list(g_mime_param_list_parse(nullptr, parameters.constData()));
    GMimeParam* parameter = list == nullptr ? nullptr : g_mime_param_list_get_parameter(list.get(), name);
    return parameter == nullptr ? QByteArray() : QByteArray(g_mime_param_get_value(parameter));
}

/// GMime decodes while it parses, when not everything is known that a message tells about its character sets.
QString ParameterText(const Parameter& parameter, const CharsetEvidence& evidence) {
    const QByteArray field = LastField(parameter.part, parameter.field);
    const QByteArray bytes = SpeaksForItself(field) ? QByteArray() : ParameterBytes(field, parameter.name);
    return SpeaksForItself(bytes) ? QString::fromUtf8(parameter.text) : evidence.DecodeValue(bytes);
}

} // namespace

LoadError OpenMessage(const QByteArray& bytes, OpenedMessage& opened) {
    if (bytes.isEmpty())
        return LoadError::Empty;
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
    const qsizetype headerSize = scanner.HeaderEnd() - scanner.HeaderStart();
    opened.ofHeader = CharsetEvidence(block.sliced(scanner.HeaderStart(), headerSize));
    opened.message = RunParser(input, opened.ofHeader);
    return opened.message == nullptr ? LoadError::NoHeaderField : LoadError::None;
}

const char* DeclaredCharset(GMimeObject* part) {
    if (!GMIME_IS_PART(part) || !g_mime_content_type_is_type(g_mime_object_get_content_type(part), "text", "*"))
        return nullptr;
    return g_mime_object_get_content_type_parameter(part, "charset");
}

void DeclareParts(GMimeObject* part, CharsetEvidence& evidence, int depth) {
    if (const char* charset = DeclaredCharset(part))
        evidence.Declare(charset);
    if (!GMIME_IS_MULTIPART(part) || depth > kMaximumDepth)
        return;
    const int count = g_mime_multipart_get_count(GMIME_MULTIPART(part));
    for (int i = 0; i < count; ++i)
        DeclareParts(g_mime_multipart_get_part(GMIME_MULTIPART(part), i), evidence, depth + 1);
}

QString DeclaredFileName(GMimeObject* part, const CharsetEvidence& evidence) {
    if (const char* name = g_mime_object_get_content_disposition_parameter(part, "filename"))
        return ParameterText({part, "Content-Disposition", "filename", name}, evidence);
    if (const char* name = g_mime_object_get_content_type_parameter(part, "name"))
        return ParameterText({part, "Content-Type", "name", name}, evidence);
    return {};
}

QByteArray PartBytes(GMimePart* part) {
    GMimeDataWrapper* content = g_mime_part_get_content(part);
    if (content == nullptr)
        return {};
    const GMimePtr<GMimeStream> stream(g_mime_stream_mem_new());
    g_mime_data_wrapper_write_to_stream(content, stream.get());
    const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
    return QByteArray(reinterpret_cast<const char*>(bytes->data), bytes->len);
}

} // namespace quellbox
