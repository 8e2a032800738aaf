#include "delivery/SmtpCapabilities.h"

#include <algorithm>

namespace quellbox {

SmtpCapabilities ParseCapabilities(const SmtpReply& hello) {
    SmtpCapabilities capabilities;
    // The first line is a greeting.
    for (const QByteArray& line : hello.lines.mid(1)) {
        const QByteArrayList words = line.simplified().toUpper().split(' ');
        const QByteArray& keyword = words.first();
        if (keyword == "PIPELINING") {
            capabilities.pipelining = true;
        } else if (keyword == "8BITMIME") {
            capabilities.eightBit = true;
        } else if (keyword == "SMTPUTF8") {
            capabilities.smtpUtf8 = true;
        } else if (keyword == "AUTH" || keyword.startsWith("AUTH=")) {
            capabilities.authentication = true;
        } else if (keyword == "SIZE") {
            capabilities.size = true;
            capabilities.sizeLimit = std::max<qint64>(words.value(1).toLongLong(), 0);
        }
    }
    return capabilities;
}

} // namespace quellbox
