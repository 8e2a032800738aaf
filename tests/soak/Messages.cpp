#include "tests/soak/Messages.h"

#include <random>

namespace quellbox::soak {

QByteArray MessageOf(int number) {
    std::minstd_rand random(static_cast<unsigned>(number) + 1);
    const QByteArray text = QByteArray::number(number);
    QByteArray bytes = "From: sender" + text + "@example.org\r\nTo: reader@example.com\r\nX-Sender: sender" + text +
                       "@example.org\r\nSubject: message " + text + "\r\n\r\n";
    const auto size = static_cast<qsizetype>(500 + random() % 40'000);
    while (bytes.size() < size) {
        bytes += QByteArray::number(static_cast<qulonglong>(random())) + "\r\n";
    }
    return bytes;
}

QString NameOf(int number) {
    return QStringLiteral("%1.EML").arg(number, 7, 10, QLatin1Char('0'));
}

int NumberOf(const QString& name) {
    bool isNumber = false;
    const int number = name.left(7).toInt(&isNumber);
    return isNumber && name == NameOf(number) ? number : -1;
}

bool IsOfToleratedSender(int number) {
    return number % 10 == 7;
}

QString ToleratedSender() {
    return QStringLiteral("7@example.org");
}

} // namespace quellbox::soak
