#include "fuzz/FuzzTarget.h"
#include "platform/RuntimeError.h"
#include "settings/TextConversion.h"

#include <cmath>
#include <optional>

namespace quellbox {
namespace {

/// What a conversion gives; empty when it refuses the text. Any other exception ends the program.
template <typename Value>
std::optional<Value> Convert(Value (*conversion)(const QString&), const QString& text) {
    try {
        return conversion(text);
    } catch (const RuntimeError& error) {
        Require(!error.Text().isEmpty(), "a refusal says why");
        return std::nullopt;
    }
}

} // namespace
} // namespace quellbox

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quellbox;
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    const double number = LeadingNumber(text);
    Require(!std::isnan(number), "a leading number is a number");
    const std::optional<qint16> small = Convert(ToInteger16, text);
    const std::optional<qint32> large = Convert(ToInteger32, text);
    Require(!small || large == qint32{*small}, "both sizes of integer agree");
    Require(!large || std::abs(*large - number) <= 0.5, "an integer is the nearest one");
    const std::optional<bool> truth = Convert(ToBoolean, text);
    Require(!truth || ToBoolean(FromBoolean(*truth)) == *truth, "True and False read as they were written");
    return 0;
}
