// How long it takes to make a message readable, against what the raw pane and the structure tree need for the same
// message; also of pages that were made to take long.
#include "benchmarks/Bench.h"
#include "contents/RawText.h"
#include "contents/ReadableText.h"
#include "mail/MailMessage.h"

#include <QCoreApplication>

#include <cstdio>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr qsizetype megabyte = 1024 * 1024;
constexpr qsizetype whole = 25 * megabyte;
constexpr int rounds = 3;

QByteArray Filled(const QByteArray& piece, qsizetype size = whole) {
    return piece.repeated(size / piece.size());
}

void Measure(const char* what, const QByteArray& content, const char* expected, const QByteArray& type = "text/html") {
    const QByteArray bytes =
        "From: a@example.com\r\nSubject: a large one\r\nContent-Type: " + type + "; charset=utf-8\r\n\r\n" + content;
    const ServerProfile& profile = ServerProfiles().front();
    Best raw;
    Best readable;
    for (int round = 0; round < rounds; ++round) {
        raw.Add(Time([&] {
            Require(RawText(bytes).size() > 0, "no raw text");
            MailMessage message;
            Require(message.LoadBytes(bytes) == 0, "the message was not parsed");
        }));
        readable.Add(Time([&] {
            Require(ReadableText(bytes, profile).contains(QLatin1String(expected)), "the text is not the right one");
        }));
    }
    std::printf("%s\n", what);
    Report("  raw text and structure", raw.seconds * 1e3, "ms");
    Report("  readable text", readable.seconds * 1e3, "ms");
    Report("  ratio", readable.seconds / raw.seconds, "times");
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    Measure("25 MiB of text in paragraphs", Filled("<p>" + QByteArray("some words of a text ").repeated(40) + "</p>\n"),
            "words of a text");
    Measure("25 MiB of a newsletter",
            Filled("<tr><td style='color:#333;font-size:14px'><p class=x>Some words that are read</p></td><td>"
                   "<a href='http://news.example/1'>More of it</a>&nbsp;</td></tr>\n"),
            "More of it [1]");
    Measure("25 MiB in one word", Filled("x"), "xxxx");
    Measure("a million tags", Filled("<b>x</b>", 500'000 * 8), "xxxx");
    Measure("25 MiB of tags", Filled("<p>"), "not shown");
    Measure("elements 100,000 deep", Filled("<div>", 500'000) + "x", "not shown");
    Measure("a million end tags in a deep page", "x<b>" + Filled("<div>", 50'000) + Filled("</b>", 4'000'000),
            "not shown");
    Measure("25 MiB of broken entities", Filled("&#x41;&bogus;&#;&amp"), "A");
    Measure("25 MiB of attributes in one tag", "x<p " + Filled("abc=1 b\xC3\xA4 "), "x");
    Measure("25 MiB of a comment without an end", "x<!--" + Filled("y"), "x");
    Measure("25 MiB of sections that end in one place", "x" + Filled("<![") + "-->y", "x");
    Measure("a million rules without a block", "<style>" + Filled("@a;", 400'000) + Filled(" ", 100'000) + "{</style>x",
            "x");
    Measure("25 MiB of references that are not known", Filled("&aaaaaaaaaaaaaaaaaaaa;"), "&aaaa");
    Measure("end tags with long names in a deep page",
            Filled("<" + QByteArray(90, 'n') + ">", 500'000) + Filled("</" + QByteArray(90, 'n') + "x>"), "not shown");
    Measure("25 MiB of lists in deep quotes", QByteArray("<blockquote>").repeated(20) + Filled("<li>a"), "not shown");
    Measure("25 MiB of short lines as plain text", Filled("x\r\n"), "  x", "text/plain");
    Measure("25 MiB of short lines in an attached message", "Subject: s\r\n\r\n" + Filled("x\r\n"), "|   x",
            "message/rfc822");
    Report("largest memory of the program", static_cast<double>(MemoryKiB("VmHWM:")) / 1024, "MiB");
    return 0;
}
