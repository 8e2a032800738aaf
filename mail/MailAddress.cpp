#include "mail/MailAddress.h"

#include "mail/DisplayText.h"
#include "mail/GMimeObjects.h"
#include "mail/GMimeStart.h"

#include <algorithm>

namespace quellbox {

namespace {

constexpr size_t mostAddresses = 100;
constexpr qsizetype mostFieldBytes = 64 * 1024;

void AddAddresses(InternetAddressList* list, std::vector<MailAddress>& addresses, bool isGroup) {
    const int count = internet_address_list_length(list);
    for (int i = 0; i < count && addresses.size() < mostAddresses; ++i) {
        InternetAddress* each = internet_address_list_get_address(list, i);
        if (INTERNET_ADDRESS_IS_MAILBOX(each)) {
            const char* name = internet_address_get_name(each);
            const char* address = internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(each));
            addresses.push_back(
                {CleanseForDisplay(QString::fromUtf8(name)), CleanseForDisplay(QString::fromUtf8(address))});
        } else if (INTERNET_ADDRESS_IS_GROUP(each) && !isGroup) { // a group holds no groups
            AddAddresses(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(each)), addresses, true);
        }
    }
}

} // namespace

QString MailAddress::Domain() const {
    const qsizetype at = address.lastIndexOf(u'@');
    return at < 0 ? QString() : address.sliced(at + 1);
}

std::vector<MailAddress> ReadAddresses(QByteArrayView raw, const CharsetEvidence& evidence) {
    StartGMime();
    const QByteArray text =
        evidence.DecodeValue(raw.first(std::min(raw.size(), mostFieldBytes))).toUtf8().replace("\r\n", "\n").trimmed();
    const GMimePtr<InternetAddressList> list(internet_address_list_parse(nullptr, text.constData()));
    std::vector<MailAddress> addresses;
    if (list != nullptr) {
        AddAddresses(list.get(), addresses, false);
    }
    return addresses;
}

} // namespace quellbox
