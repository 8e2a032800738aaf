#include "messages/FormatTime.h"

#include <array>
#include <chrono>

namespace quellbox {

namespace {

void PutDigits(char* target, unsigned value, int digits) {
    for (int place = digits - 1; place >= 0; --place) {
        target[place] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

} // namespace

void AppendTime(qint64 localSeconds, QString& to) {
    const auto days = std::chrono::floor<std::chrono::days>(std::chrono::seconds(localSeconds));
    const auto second = static_cast<unsigned>(localSeconds - std::chrono::seconds(days).count());
    const std::chrono::year_month_day date{std::chrono::sys_days{days}};
    std::array text{'0', '0', '0', '0', '-', '0', '0', '-', '0', '0', ' ', '0', '0', ':', '0', '0', ':', '0', '0'};
    PutDigits(&text[0], static_cast<unsigned>(static_cast<int>(date.year())), 4);
    PutDigits(&text[5], static_cast<unsigned>(date.month()), 2);
    PutDigits(&text[8], static_cast<unsigned>(date.day()), 2);
    PutDigits(&text[11], second / 3600, 2);
    PutDigits(&text[14], second / 60 % 60, 2);
    PutDigits(&text[17], second % 60, 2);
    to.append(QLatin1String(text.data(), text.size()));
}

} // namespace quellbox
