#include "contents/StructureTree.h"
#include "fuzz/FuzzTarget.h"
#include "mail/MailMessage.h"
#include "mail/MessageParser.h"

namespace quellbox {
namespace {

/// The number of nodes. Labels come from the message, so all of them must be fit to be copied.
int CountNodes(const StructureTree& nodes) {
    int count = 0;
    for (const StructureNode& node : nodes) {
        count += 1 + CountNodes(node.children);
    }
    return count;
}

void CheckParts(const MailMessage& message) {
    Require(message.Parts().size() <= size_t{kMaximumParts}, "the number of parts is bounded");
    for (const MessagePart& part : message.Parts()) {
        QString otherLineEnds = part.text;
        otherLineEnds.remove(QStringLiteral("\r\n"));
        Require(!otherLineEnds.contains(QLatin1Char('\n')), "every line of a text ends with CRLF");
    }
}

void CheckTree(const MailMessage& message) {
    const StructureTree tree = BuildStructureTree(message);
    Require(tree.size() == message.Parts().size() + 1, "the tree has a node for the message and for each part");
    const int count = CountNodes(tree);
    const TogglesResult result = ApplyContentsToggles(tree, true, {true, true});
    Require(result.scrollTo < count && result.expandAlso < count, "the toggles name nodes of the tree");
    for (const int node : result.bold) {
        Require(node >= 0 && node < count, "a bold node is one of the tree");
    }
}

} // namespace
} // namespace quellbox

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quellbox;
    MailMessage message;
    const int code = message.LoadBytes(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
    Require((code == 0) == message.LastErrorText().isEmpty(), "an error has a code and a text");
    for (const char* name : {"DATE", "FROM", "TO", "CC", "BCC", "Subject", "unknown"}) {
        message.Property(QString::fromLatin1(name));
    }
    CheckParts(message);
    if (code == 0) {
        CheckTree(message);
    }
    return 0;
}
