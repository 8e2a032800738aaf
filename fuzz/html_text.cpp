#include "contents/ReadableText.h"
#include "fuzz/FuzzTarget.h"
#include "mail/HtmlText.h"

#include <algorithm>

namespace quellbox {
namespace {

void CheckPage(const QByteArray& page) {
    LinkNumbers numbers;
    const HtmlText read = ReadHtml(page, "", numbers);
    Require(read.text.isEmpty() || read.text.endsWith(QLatin1Char('\n')), "every line of a text has an end");
    Require(!read.text.startsWith(QLatin1Char('\n')) && !read.text.contains(QStringLiteral("\n\n\n")),
            "there are no two blank lines in a row");
    for (const HtmlLink& link : read.links) {
        if (link.number == 0) {
            Require(numbers.AreMissing(), "a link has a number, unless there are too many");
            continue;
        }
        Require(link.number >= 1 && link.number <= numbers.Targets().size(), "the number of a link is one of those");
        Require(numbers.Targets()[link.number - 1] == link.target, "the number of a link is that of its place");
    }
}

void CheckMessage(const QByteArray& bytes) {
    const QString text = ReadableText(bytes, ServerProfiles().front());
    Require(!text.isEmpty(), "there is something to read, be it why there is nothing");
    Require(std::none_of(text.begin(), text.end(),
                         [](QChar c) {
                             return c.category() == QChar::Other_Control && c != QLatin1Char('\n') &&
                                    c != QLatin1Char('\t');
                         }),
            "no character of a readable text acts");
}

} // namespace
} // namespace quellbox

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quellbox;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    CheckPage(bytes);
    CheckMessage(bytes);
    CheckMessage("Content-Type: text/html\r\n\r\n" + bytes);
    return 0;
}
