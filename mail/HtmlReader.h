#pragma once

#include "mail/HtmlElements.h"
#include "mail/HtmlLinks.h"
#include "mail/HtmlParser.h"
#include "mail/HtmlStyleSheet.h"
#include "mail/HtmlText.h"
#include "mail/PageBase.h"
#include "mail/TextFlow.h"

#include <vector>

namespace quellbox {

/// Writes what the parser tells of a page into a flow of text, and notes its links.
class HtmlReader : public HtmlSink {
public:
    HtmlReader(LinkNumbers& numbers, ReadingBudget& budget) : budget_(budget), links_(numbers) {}

    void Begin(QByteArrayView element, const HtmlAttributes& attributes) override;
    void End() override;
    void Text(QByteArrayView utf8) override;
    bool IsFull() const override;

    /// Whether a style element came when there was text already, which it may hide.
    bool HasLateSheet() const { return hasLateSheet_; }

    /// Reads with the sheet of one that has read the same page before, in place of the own one.
    void UseSheetOf(HtmlReader& other);

    /// What has been read. `isWhole` says that the parser came to the end of the page.
    HtmlText Finish(bool isWhole);

private:
    struct Open {
        HtmlRole role = HtmlRole::Block;
        bool isIgnored = false;
        HtmlLook look = {};
        bool isLink = false;
    };

    const Open& Top() const { return open_.back(); }
    HtmlLook LookOf(QByteArrayView element, const HtmlAttributes& attributes) const;
    void AddSheet();
    void FlushText();
    void AddText(const QString& text);
    void AddHidden(const QString& text);
    void FlushHidden();
    void BeginRole(QByteArrayView element, const HtmlAttributes& attributes);
    void BeginOther(QByteArrayView element, const HtmlAttributes& attributes);
    void EndRole(const Open& open);
    void BeginLink(const HtmlAttributes& attributes, QByteArrayView attribute, bool hasContent);
    void EndLink(const Open& open);
    void AddLinkMark(const Open& open, const HtmlLink& link);
    void AddPicture(const HtmlAttributes& attributes);
    void AddControl(const HtmlAttributes& attributes);

    ReadingBudget& budget_;
    HtmlLinks links_;
    TextFlow flow_;
    HtmlStyleSheet sheet_;
    bool hasLateSheet_ = false;
    bool isSheetWhole_ = false;                     // it is that of the whole page
    std::vector<Open> open_ = std::vector<Open>(1); // the elements that are open, below them the page itself
    QByteArray pieces_;                             // of text, not yet in the flow
    QByteArray css_;                                // of the style element that is open
    QString hidden_;                                // not yet in the flow
    PageBase base_;
};

} // namespace quellbox
