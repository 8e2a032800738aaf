#include "fuzz/FuzzTarget.h"
#include "mail/Charset.h"
#include "mail/CharsetEvidence.h"
#include "mail/CharsetGuess.h"

/// The first line of the input declares a character set, the rest is a header block and a text at once.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quellbox;
    const QByteArrayView bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const qsizetype line = bytes.indexOf('\n');
    const QByteArrayView rest = bytes.sliced(line + 1);
    CharsetEvidence evidence(rest);
    if (line >= 0)
        evidence.Declare(bytes.first(line));
    const QString value = evidence.DecodeValue(rest);
    Require(evidence.DecodeValue(rest) == value, "the same bytes are read alike each time");
    Require(CharsetEvidence(evidence).DecodeText(rest) == evidence.DecodeText(rest), "a copy knows the same");
    if (QUtf8StringView(rest.data(), rest.size()).isValidUtf8() && !rest.contains('\x1B'))
        Require(value == QString::fromUtf8(rest), "UTF-8 is read as such, whatever is declared");
    Require(evidence.Declared().size() <= 8, "the number of declarations is bounded");
    const QByteArray lines = LinesBeyondAscii(rest);
    Require(lines.size() < 32768, "a guess looks at so much and no more");
    const QByteArray guess = GuessCharset(lines);
    Require(guess.isEmpty() || DecodeStrictly(lines, guess).has_value(), "a guess fits all bytes it was made from");
    return 0;
}
