#pragma once

#include "mail/CharsetEvidence.h"
#include "mail/HtmlLinks.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <vector>

namespace quellbox {

/// What the texts of one message may come to, all of them together: many parts are to cost no more than one.
struct ReadingBudget {
    qsizetype text = 48 * 1024 * 1024; ///< UTF-16 units that may still be written
    qsizetype sheet = 512 * 1024;      ///< bytes of style sheets that may still be read
    std::function<bool()> goOn = {};   ///< asked now and then; nobody waits any more for the text when it says no

    /// Whether the reading has to end here.
    bool IsSpent() const { return text <= 0 || (goOn && !goOn()); }
};

/// What a page says to a reader.
struct HtmlText {
    QString text;                ///< with LF line ends
    std::vector<HtmlLink> links; ///< in their order, each once; some thousands at most, those that lie among the last
    bool isCut = false;          ///< the rest of the page was beyond the bounds
};

/// Makes plain text of an HTML page: headings, lists, tables, quotes, preformatted text, the alternative texts of
/// pictures. A link is followed by its number in brackets. Text that the page hides from its readers is marked as
/// hidden: see HtmlLook::ShowsText(). `charset` is the declared one; where it is empty the page's own declaration
/// counts. Nothing is fetched or executed. The time is linear in the size, and bounds hold for the nesting, for the
/// number of links and for the size of the result, so that hostile pages are cut and not waited for. The characters are
/// not cleansed.
HtmlText ReadHtml(const QByteArray& page, QByteArrayView charset, LinkNumbers& numbers,
                  const CharsetEvidence& evidence = CharsetEvidence());

/// The same for one of several pages, within the budget of the message. The caller takes from it what the text needs;
/// the style sheets are counted here.
HtmlText ReadHtml(const QByteArray& page, QByteArrayView charset, LinkNumbers& numbers, const CharsetEvidence& evidence,
                  ReadingBudget& budget);

} // namespace quellbox
