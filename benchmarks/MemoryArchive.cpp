#include "benchmarks/MemoryArchive.h"

namespace quellbox::bench {

void FillArchive(MemoryFileSystem& files, int first, int count) {
    constexpr qint64 nsPerSecond = 1'000'000'000;
    constexpr qint64 start = 1'700'000'000 * nsPerSecond;
    const QByteArray text = "Received: from mail.example (192.0.2.1)\r\n"
                            "To: reader@example.org\r\n"
                            "From: \"Sender\" <sender@example.com>\r\n"
                            "Subject: =?utf-8?Q?Gr=C3=BC=C3=9Fe?= number %1\r\n"
                            "X-SCL: 7 99.00%\r\n"
                            "\r\n"
                            "A body.\r\n";
    for (int number = first; number < first + count; ++number) {
        QByteArray bytes = text;
        bytes.replace("%1", QByteArray::number(number));
        const QString name = QStringLiteral("%1.EML").arg(number, 6, 10, QLatin1Char('0'));
        files.Add(archiveFolder + name, bytes, start + number * nsPerSecond);
    }
}

} // namespace quellbox::bench
