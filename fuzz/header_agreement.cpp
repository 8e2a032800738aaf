#include "fuzz/FuzzTarget.h"
#include "mail/HeaderFields.h"
#include "mail/LoadError.h"
#include "mail/MailMessage.h"

namespace quellbox {
namespace {

/// True for what only the full parser refuses, because it looks at more than the header block.
bool IsOfWholeMessage(int code) {
    const auto error = static_cast<LoadError>(code);
    return error == LoadError::TooDeep || error == LoadError::TooManyParts || error == LoadError::TooManyFields;
}

} // namespace
} // namespace quellbox

/// The list takes its texts from a scanner of its own, the structure tree from the full parser: both must show the same
/// message.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quellbox;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const HeaderFields fields = ParseHeaderFields(bytes);
    MailMessage message;
    const int code = message.LoadBytes(bytes);
    if (IsOfWholeMessage(code)) {
        return 0;
    }
    Require(fields.errorCode == code, "both accept or refuse a message alike");
    Require(fields.recipient == message.Recipient(), "both find the same To");
    Require(fields.sender == message.Sender(), "both find the same From");
    Require(fields.subject == message.Subject(), "both find the same Subject");
    const auto values = FieldValues(bytes, WantedFields({"X-SCL", "X-SMSMSE-SCL"}));
    Require(values[0] == message.Header(QStringLiteral("X-SCL")), "both find the same X-SCL");
    Require(values[1] == message.Header(QStringLiteral("X-SMSMSE-SCL")), "both find the same X-SMSMSE-SCL");
    Require(fields.xSender == message.Header(QStringLiteral("X-Sender")).value_or(QString()),
            "both find the same X-Sender");
    return 0;
}
