#include "mail/HtmlParser.h"

#include <libxml/HTMLparser.h>
#include <libxml/parser.h>

#include <algorithm>
#include <cctype>
#include <memory>

namespace quellbox {

namespace {

// The parser is given so many bytes at once. Between two pieces it is decided whether it goes on.
constexpr qsizetype pieceSize = 4096;
// What the work of a page may be. For an end tag the parser may search all elements that are open, and an attribute is
// compared with all others of its tag; the unit is one such comparison. Real pages stay a hundred times below.
constexpr qint64 mostWork = 200'000'000;
constexpr qint64 workOfTag = 50;
constexpr qint64 workOfEntity = 150; // it is looked for in a table, and told as an error where it is not there
constexpr qint64 workOfNumber = 20;
constexpr qsizetype longestElement = 100; // the parser does not look further
constexpr qint64 lettersAUnit = 8;
// A tag is taken apart when its end has come: that must not be put off for ever.
constexpr qint64 mostWordsOfTag = 20'000;
// Around the page, because the parser stops where an outermost element ends.
constexpr char outermost[] = "<quellbox-page>";

struct FreeContext {
    void operator()(htmlParserCtxtPtr context) const { htmlFreeParserCtxt(context); }
};
using ContextPtr = std::unique_ptr<htmlParserCtxt, FreeContext>;

QByteArrayView View(const xmlChar* text) {
    return QByteArrayView(reinterpret_cast<const char*>(text));
}

/// Between the parser's calls and the sink.
struct ParserRun {
    HtmlSink& sink;
    HtmlAttributes attributes = {};
    qint64 depth = 0;
    qint64 work = 0;
    qint64 words = 0;   // since something was told
    qint64 awaited = 0; // bytes of a tag whose end has not come
    bool hasEnded = false;
};

void OnStart(void* data, const xmlChar* name, const xmlChar** attributes) {
    auto& run = *static_cast<ParserRun*>(data);
    run.attributes.clear();
    for (; attributes != nullptr && attributes[0] != nullptr; attributes += 2) {
        run.attributes.emplace_back(View(attributes[0]),
                                    attributes[1] == nullptr ? QByteArrayView() : View(attributes[1]));
    }
    const auto count = static_cast<qint64>(run.attributes.size());
    run.work += count * count / 2;
    run.words = 0;
    if (++run.depth == 1) {
        return; // the outermost one
    }
    run.sink.Begin(View(name), run.attributes);
}

void OnEnd(void* data, const xmlChar*) {
    auto& run = *static_cast<ParserRun*>(data);
    run.words = 0;
    if (--run.depth > 0) {
        run.sink.End();
    } else {
        run.hasEnded = true;
    }
}

void OnText(void* data, const xmlChar* text, int size) {
    auto& run = *static_cast<ParserRun*>(data);
    run.words = 0;
    run.sink.Text(QByteArrayView(reinterpret_cast<const char*>(text), size));
}

void OnComment(void* data, const xmlChar*) {
    static_cast<ParserRun*>(data)->words = 0;
}

htmlSAXHandler Handler() {
    htmlSAXHandler handler{};
    handler.startElement = OnStart;
    handler.endElement = OnEnd;
    handler.characters = OnText;
    handler.ignorableWhitespace = OnText;
    handler.cdataBlock = OnText;
    handler.comment = OnComment;
    return handler;
}

void StartParserLibrary() {
    [[maybe_unused]] static const bool started = [] {
        xmlInitParser();
        return true;
    }();
}

/// Blanks out what a browser takes for a comment and the parser for text, as in "<![if !mso]>". What ends a real
/// comment stays. All that begin before the same ">" end there, so that each is looked for once.
void RemoveMarkedSections(QByteArray& page) {
    for (qsizetype at = page.indexOf("<!["); at >= 0;) {
        const qsizetype end = page.indexOf('>', at);
        if (end < 0) {
            return;
        }
        if (!QByteArrayView(page).sliced(at, end - at).endsWith("--")) {
            std::fill(page.begin() + at, page.begin() + end + 1, ' ');
        }
        at = page.indexOf("<![", end);
    }
}

/// What the tag costs behind whose "<" a text stands: its name is compared with those of the open elements.
qint64 WorkOfTag(QByteArrayView rest, qint64 depth) {
    const QByteArrayView start = rest.first(std::min(longestElement, rest.size()));
    const auto isEnd = [](char c) { return c == '>' || c == '<' || c == ' ' || c == '\n' || c == '\t' || c == '\r'; };
    const auto length = std::find_if(start.begin(), start.end(), isEnd) - start.begin();
    return workOfTag + length + depth * (1 + length / lettersAUnit);
}

qint64 WorkOfReference(QByteArrayView rest) {
    return rest.startsWith('#') ? workOfNumber : workOfEntity;
}

/// Adds the work that a piece makes, and says whether there is more of it than a page may make.
bool IsTooMuch(QByteArrayView piece, ParserRun& run) {
    bool wasBlank = false;
    for (qsizetype at = 0; at < piece.size(); ++at) {
        const char c = piece[at];
        const bool isBlank = c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '/' || c == '"' || c == '\'';
        run.words += isBlank && !wasBlank ? 1 : 0;
        wasBlank = isBlank;
        if (c == '<') {
            run.work += WorkOfTag(piece.sliced(at + 1), run.depth);
        } else if (c == '&') {
            run.work += WorkOfReference(piece.sliced(at + 1));
        }
    }
    return run.work > mostWork || run.words > mostWordsOfTag;
}

/// Looks whether the parser waits for the end of a tag. It also waits for the end of a long text, which costs nothing.
/// From a piece that ended between quotes libxml2 2.9 goes on without knowing which ones, and finds no end any more: so
/// it is made to begin anew, each time with twice as much.
void LookAfterTag(htmlParserCtxt& context, ParserRun& run) {
    const xmlParserInput* input = context.input;
    const bool isInTag = input != nullptr && input->end - input->cur > 1 && input->cur[0] == '<' &&
                         std::isalpha(static_cast<unsigned char>(input->cur[1]));
    if (!isInTag) {
        run.words = 0;
        run.awaited = 0;
    } else if (input->end - input->cur >= 2 * run.awaited) {
        run.awaited = input->end - input->cur;
        context.checkIndex = 0;
    }
}

/// How long the next piece is: up to the end of a tag, where there is one.
qsizetype PieceAt(QByteArrayView page, qsizetype at) {
    const QByteArrayView piece = page.sliced(at, std::min(pieceSize, page.size() - at));
    const qsizetype end = piece.lastIndexOf('>');
    return end < 0 ? piece.size() : end + 1;
}

/// The parser keeps a text back until it knows its end: what came before a page is cut is to be seen.
void TellAwaitedText(htmlParserCtxt& context, const ParserRun& run) {
    if (run.words <= mostWordsOfTag) {
        htmlParseChunk(&context, nullptr, 0, 1);
    }
}

} // namespace

bool ParseHtml(QByteArray utf8, HtmlSink& sink) {
    StartParserLibrary();
    std::replace(utf8.begin(), utf8.end(), '\0', ' '); // which would end the text for the parser
    RemoveMarkedSections(utf8);
    ParserRun run{sink};
    htmlSAXHandler handler = Handler();
    const ContextPtr context(htmlCreatePushParserCtxt(&handler, &run, nullptr, 0, nullptr, XML_CHAR_ENCODING_UTF8));
    if (context == nullptr) {
        return false;
    }
    htmlCtxtUseOptions(context.get(), HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING |
                                          HTML_PARSE_NONET | HTML_PARSE_NOIMPLIED | HTML_PARSE_IGNORE_ENC);
    htmlParseChunk(context.get(), outermost, sizeof outermost - 1, 0);
    for (qsizetype at = 0; at < utf8.size();) {
        const QByteArrayView piece = QByteArrayView(utf8).sliced(at, PieceAt(utf8, at));
        if (sink.IsFull() || run.hasEnded) {
            return false;
        }
        if (IsTooMuch(piece, run)) {
            TellAwaitedText(*context, run);
            return false;
        }
        htmlParseChunk(context.get(), piece.data(), static_cast<int>(piece.size()), 0);
        LookAfterTag(*context, run);
        at += piece.size();
    }
    htmlParseChunk(context.get(), nullptr, 0, 1);
    return !sink.IsFull();
}

} // namespace quellbox
