#include "mail/HtmlText.h"

#include "mail/HtmlCharset.h"
#include "mail/HtmlReader.h"

namespace quellbox {

HtmlText ReadHtml(const QByteArray& page, QByteArrayView charset, LinkNumbers& numbers,
                  const CharsetEvidence& evidence) {
    ReadingBudget budget;
    return ReadHtml(page, charset, numbers, evidence, budget);
}

HtmlText ReadHtml(const QByteArray& page, QByteArrayView charset, LinkNumbers& numbers, const CharsetEvidence& evidence,
                  ReadingBudget& budget) {
    HtmlReader reader(numbers, budget);
    const QByteArray utf8 = PageAsUtf8(page, charset, evidence);
    const bool isWhole = ParseHtml(utf8, reader);
    if (!reader.HasLateSheet()) {
        return reader.Finish(isWhole);
    }
    HtmlReader again(numbers, budget);
    again.UseSheetOf(reader);
    const bool isWholeAgain = ParseHtml(utf8, again);
    return again.Finish(isWholeAgain);
}

} // namespace quellbox
