#include "fuzz/FuzzTarget.h"
#include "mail/DisplayText.h"
#include "mail/HeaderFields.h"

namespace quellbox {
namespace {

void RequireFitForDisplay(const QString& text) {
    Require(CleanseForDisplay(text) == text, "a header field is fit for display");
}

} // namespace
} // namespace quellbox

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quellbox;
    for (const ServerProfile& profile : ServerProfiles()) {
        const HeaderFields fields = ParseHeaderFields(QByteArrayView(data, qsizetype(size)), profile);
        Require((fields.errorCode == 0) == fields.errorText.isEmpty(), "an error has a code and a text");
        RequireFitForDisplay(fields.recipient);
        RequireFitForDisplay(fields.sender);
        RequireFitForDisplay(fields.subject);
        RequireFitForDisplay(fields.xSender);
        RequireFitForDisplay(fields.rating.trimmed()); // the blanks before a per cent sign belong to it
    }
    return 0;
}
