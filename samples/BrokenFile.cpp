#include "samples/BrokenFile.h"

#include "samples/Message.h"
#include "samples/Texts.h"

namespace quellbox::samples {

namespace {

constexpr qsizetype longLine = 40000;
constexpr qsizetype textSize = 2000;

Entity Letter(Random& random) {
    return TextEntity("plain", "iso-8859-1", Paragraphs(random, true, textSize), TransferEncoding::EightBit);
}

QByteArray WithHeader(Random& random, const Entity& content) {
    return Entity{MakeHeader(random, content.header), content.body}.Bytes();
}

QByteArray UnclosedBoundary(Random& random) {
    return WithHeader(random, MultipartEntity("mixed", "never-closed", {Letter(random), Letter(random)}, false));
}

QByteArray LongLines(Random& random) {
    Entity content = Letter(random);
    content.header += "X-Long: " + QByteArray(longLine, 'x') + "\r\n";
    content.body += QByteArray(longLine, 'y') + "\r\n";
    return WithHeader(random, content);
}

QByteArray HeaderOnly(Random& random) {
    return MakeHeader(random, "Content-Type: text/plain\r\n");
}

QByteArray CutOff(Random& random) {
    const QByteArray message = WithHeader(random, Letter(random));
    return message.left(random.Between(100, message.size()));
}

QByteArray DamagedBase64(Random& random) {
    Entity content = AttachmentEntity("application/zip", "details.zip", NameForm::Plain, RandomBytes(random, textSize));
    content.body.replace('A', "*");
    return WithHeader(random, content);
}

QByteArray WithNulBytes(Random& random) {
    Entity content = Letter(random);
    content.header += QByteArray("X-Nul: a\0b\r\n", 12);
    content.body.replace(' ', QByteArray(1, '\0'));
    return WithHeader(random, content);
}

} // namespace

QByteArray MakeBrokenFile(Random& random) {
    switch (random.Between(0, 8)) {
    case 0:
        return {};
    case 1:
        return RandomBytes(random, textSize);
    case 2:
        return Paragraphs(random, false, textSize);
    case 3:
        return UnclosedBoundary(random);
    case 4:
        return LongLines(random);
    case 5:
        return HeaderOnly(random);
    case 6:
        return CutOff(random);
    case 7:
        return DamagedBase64(random);
    default:
        return WithNulBytes(random);
    }
}

} // namespace quellbox::samples
