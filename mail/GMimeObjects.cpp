#include "mail/GMimeObjects.h"

#include "mail/GMimeStart.h"
#include "mail/HeaderScanner.h"

#include <algorithm>

namespace quellbox {

namespace {

struct FreeOptions {
    void operator()(GMimeParserOptions* options) const { g_mime_parser_options_free(options); }
};
using OptionsPtr = std::unique_ptr<GMimeParserOptions, FreeOptions>;

GMimePtr<GMimeMessage> RunParser(const QByteArray& bytes) {
    StartGMime();
    const OptionsPtr options(g_mime_parser_options_new());
    // For parameters such as file names, which GMime decodes itself, undeclared text has the same meaning as elsewhere.
    const char* fallback[] = {"utf-8", "windows-1252", nullptr};
    g_mime_parser_options_set_fallback_charsets(options.get(), fallback);
    const GMimePtr<GMimeStream> stream(
        g_mime_stream_mem_new_with_buffer(bytes.constData(), static_cast<size_t>(bytes.size())));
    const GMimePtr<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    return GMimePtr<GMimeMessage>(g_mime_parser_construct_message(parser.get(), options.get()));
}

} // namespace

LoadError OpenMessage(const QByteArray& bytes, GMimePtr<GMimeMessage>& message) {
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
    message = RunParser(input);
    return message == nullptr ? LoadError::NoHeaderField : LoadError::None;
}

QString DeclaredFileName(GMimeObject* part) {
    const char* name = g_mime_object_get_content_disposition_parameter(part, "filename");
    if (name == nullptr)
        name = g_mime_object_get_content_type_parameter(part, "name");
    return name == nullptr ? QString() : QString::fromUtf8(name);
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
