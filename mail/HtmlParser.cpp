#include "mail/HtmlParser.h"

#include <libxml/HTMLparser.h>
#include <libxml/parser.h>

#include <algorithm>
#include <memory>

namespace quellbox {

namespace {

// The parser is given so many bytes at once. Between two pieces it is decided whether it goes on.
constexpr qsizetype pieceSize = 4096;
// For an end tag the parser may search all elements that are open. Real pages stay a hundred times below.
constexpr qint64 mostWork = 150'000'000;

struct FreeContext {
    void operator()(htmlParserCtxtPtr context) const { htmlFreeParserCtxt(context); }
};
using ContextPtr = std::unique_ptr<htmlParserCtxt, FreeContext>;

QByteArrayView View(const xmlChar* text) {
    return QByteArrayView(reinterpret_cast<const char*>(text));
}

/// Between the parser's calls and the sink.
struct Run {
    HtmlSink& sink;
    HtmlAttributes attributes = {};
    qint64 depth = 0;
};

void OnStart(void* data, const xmlChar* name, const xmlChar** attributes) {
    auto& run = *static_cast<Run*>(data);
    run.attributes.clear();
    for (; attributes != nullptr && attributes[0] != nullptr; attributes += 2) {
        run.attributes.emplace_back(View(attributes[0]),
                                    attributes[1] == nullptr ? QByteArrayView() : View(attributes[1]));
    }
    ++run.depth;
    run.sink.Begin(View(name), run.attributes);
}

void OnEnd(void* data, const xmlChar*) {
    auto& run = *static_cast<Run*>(data);
    if (run.depth > 0) {
        --run.depth;
        run.sink.End();
    }
}

void OnText(void* data, const xmlChar* text, int size) {
    static_cast<Run*>(data)->sink.Text(QByteArrayView(reinterpret_cast<const char*>(text), size));
}

htmlSAXHandler Handler() {
    htmlSAXHandler handler{};
    handler.startElement = OnStart;
    handler.endElement = OnEnd;
    handler.characters = OnText;
    handler.ignorableWhitespace = OnText;
    handler.cdataBlock = OnText;
    return handler;
}

void StartParserLibrary() {
    [[maybe_unused]] static const bool started = [] {
        xmlInitParser();
        return true;
    }();
}

/// Blanks out what a browser takes for a comment and the parser for text, as in "<![if !mso]>". What ends a real
/// comment stays.
void RemoveMarkedSections(QByteArray& page) {
    for (qsizetype at = page.indexOf("<!["); at >= 0; at = page.indexOf("<![", at + 1)) {
        const qsizetype end = page.indexOf('>', at);
        if (end < 0) {
            return;
        }
        if (!QByteArrayView(page).sliced(at, end - at).endsWith("--")) {
            std::fill(page.begin() + at, page.begin() + end + 1, ' ');
        }
    }
}

} // namespace

bool ParseHtml(QByteArray utf8, HtmlSink& sink) {
    StartParserLibrary();
    std::replace(utf8.begin(), utf8.end(), '\0', ' '); // which would end the text for the parser
    RemoveMarkedSections(utf8);
    Run run{sink};
    htmlSAXHandler handler = Handler();
    const ContextPtr context(htmlCreatePushParserCtxt(&handler, &run, nullptr, 0, nullptr, XML_CHAR_ENCODING_UTF8));
    if (context == nullptr) {
        return false;
    }
    htmlCtxtUseOptions(context.get(), HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING |
                                          HTML_PARSE_NONET | HTML_PARSE_NOIMPLIED | HTML_PARSE_IGNORE_ENC);
    qint64 work = 0;
    for (qsizetype at = 0; at < utf8.size(); at += pieceSize) {
        const QByteArrayView piece = QByteArrayView(utf8).sliced(at, std::min(pieceSize, utf8.size() - at));
        work += std::count(piece.begin(), piece.end(), '<') * (run.depth + 1);
        if (sink.IsFull() || work > mostWork) {
            return false;
        }
        htmlParseChunk(context.get(), piece.data(), static_cast<int>(piece.size()), 0);
    }
    htmlParseChunk(context.get(), nullptr, 0, 1);
    return !sink.IsFull();
}

} // namespace quellbox
