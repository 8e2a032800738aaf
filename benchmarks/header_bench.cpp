// Time for the header fields of one message, by length of the header block and by character set.
#include "mail/HeaderFields.h"

#include <benchmark/benchmark.h>

using namespace quellbox;

namespace {

QByteArray MakeMessage(qsizetype receivedFields, const QByteArray& subject) {
    QByteArray bytes;
    for (qsizetype field = 0; field < receivedFields; ++field) {
        bytes +=
            "Received: from relay.example (192.0.2.1) by mail.example\r\n\twith SMTP; 30 Sep 2004 12:00:00 +0200\r\n";
    }
    return bytes + "To: reader@example.org\r\nFrom: \"Sender\" <sender@example.com>\r\nSubject: " + subject +
           "\r\nX-SCL: 7 99.00%\r\n\r\nA body.\r\n";
}

void ParseFields(benchmark::State& state, const QByteArray& subject, const QString& shown) {
    const QByteArray bytes = MakeMessage(state.range(0), subject);
    for (auto _ : state) {
        const HeaderFields fields = ParseHeaderFields(bytes);
        if (fields.subject != shown) {
            std::abort();
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes.size());
}

} // namespace

BENCHMARK_CAPTURE(ParseFields, plain, "Hello", QStringLiteral("Hello"))->Arg(1)->Arg(8)->Arg(64);
BENCHMARK_CAPTURE(ParseFields, utf8, "=?utf-8?Q?Gr=C3=BC=C3=9Fe?=",
                  QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                    "e"))
    ->Arg(8);
BENCHMARK_CAPTURE(ParseFields, koi8,
                  "=?koi8-r?B?8NLJ18XU?=", QString::fromUtf8("\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82"))
    ->Arg(8);
// Bytes without a declaration: plain UTF-8, of which nothing is asked, and what has to be guessed.
BENCHMARK_CAPTURE(ParseFields, undeclared_utf8,
                  "Gr\xC3\xBC\xC3\x9F"
                  "e",
                  QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                    "e"))
    ->Arg(8);
BENCHMARK_CAPTURE(ParseFields, undeclared_western,
                  "Gr\xFC\xDF"
                  "e",
                  QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                    "e"))
    ->Arg(8);
BENCHMARK_CAPTURE(ParseFields, undeclared_guessed, "\xCF\xF0\xE8\xE2\xE5\xF2, \xEC\xE8\xF0",
                  QStringLiteral(u"Привет, мир"))
    ->Arg(8);

BENCHMARK_MAIN();
