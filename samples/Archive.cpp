#include "samples/Archive.h"

#include "samples/BrokenFile.h"
#include "samples/Message.h"
#include "samples/Random.h"

namespace quellbox::samples {

namespace {

constexpr qint64 dayMs = qint64{24} * 3600 * 1000;
constexpr qint64 kib = 1024;
constexpr int brokenPercent = 2;

/// Half of the messages are under 4 KiB; of 100, ten have 20 to 100 KiB and one has nearly a mebibyte.
qsizetype MessageSize(Random& random) {
    const qint64 share = random.Between(1, 100);
    if (share == 1) {
        return random.Between(900 * kib, 1100 * kib);
    }
    if (share <= 11) {
        return random.Between(20 * kib, 100 * kib);
    }
    return share <= 61 ? random.Between(kib, 4 * kib) : random.Between(4 * kib, 12 * kib);
}

/// A name as the filter gives it: a GUID in upper case.
QString MessageFileName(Random& random) {
    QByteArray digits;
    for (int half = 0; half < 2; ++half) {
        digits += QByteArray::number(random.Next(), 16).toUpper().rightJustified(16, '0');
    }
    return QString::fromLatin1(digits.left(8) + '-' + digits.mid(8, 4) + '-' + digits.mid(12, 4) + '-' +
                               digits.mid(16, 4) + '-' + digits.mid(20)) +
           QStringLiteral(".EML");
}

} // namespace

SampleFile MakeSampleFile(quint64 seed, qint64 index, qint64 days) {
    Random seeds(seed);
    const quint64 first = seeds.Next();
    const quint64 step = seeds.Next();
    Random random(first + static_cast<quint64>(index) * step);
    SampleFile file;
    file.name = MessageFileName(random);
    file.ageMs = random.Between(0, days * dayMs - 1);
    file.bytes = random.Chance(brokenPercent) ? MakeBrokenFile(random) : MakeMessage(random, MessageSize(random));
    return file;
}

} // namespace quellbox::samples
