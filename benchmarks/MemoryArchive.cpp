#include "benchmarks/MemoryArchive.h"

namespace quellbox::bench {

QByteArray ArchiveMessage(int number) {
    QByteArray bytes = "Received: from mail.example (192.0.2.1)\r\n"
                       "To: reader@example.org\r\n"
                       "From: \"Sender\" <sender@example.com>\r\n"
                       "Subject: =?utf-8?Q?Gr=C3=BC=C3=9Fe?= number %1\r\n"
                       "X-SCL: 7 99.00%\r\n"
                       "\r\n"
                       "A body.\r\n";
    bytes.replace("%1", QByteArray::number(number));
    return bytes;
}

QString ArchiveMessageName(int number) {
    return QStringLiteral("%1.EML").arg(number, 6, 10, QLatin1Char('0'));
}

qint64 ArchiveMessageTime(int number) {
    constexpr qint64 nsPerSecond = 1'000'000'000;
    return (1'700'000'000 + number) * nsPerSecond;
}

void FillArchive(MemoryFileSystem& files, int first, int count) {
    for (int number = first; number < first + count; ++number) {
        files.Add(archiveFolder + ArchiveMessageName(number), ArchiveMessage(number), ArchiveMessageTime(number));
    }
}

} // namespace quellbox::bench
