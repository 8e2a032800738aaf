#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace quellbox {

/// The places where the links of a message lead, each numbered once from 1 on.
class LinkNumbers {
public:
    /// The number of a place; 0 where there are so many that no further one is numbered.
    int NumberOf(const QString& target);

    const QStringList& Targets() const { return targets_; }

    /// Whether there were places without a number.
    bool AreMissing() const { return areMissing_; }

private:
    QStringList targets_;
    QHash<QString, int> numbers_;
    bool areMissing_ = false;
};

/// A link of a page.
struct HtmlLink {
    QString text;          ///< what is to be seen of it, its beginning
    QString target;        ///< where it leads
    int number = 0;        ///< see LinkNumbers
    bool isMarked = false; ///< its number stands in the text
};

/// The links of a page: those that are open while it is read, and the list of those that have ended.
class HtmlLinks {
public:
    explicit HtmlLinks(LinkNumbers& numbers) : numbers_(numbers) {}

    /// Opens a link within those that are open. `hasContent` says that there is something to click on.
    void Begin(const QString& target, bool hasContent);

    /// A text of the innermost open link, where there is one: hidden texts are clicked on too, but not shown.
    void AddText(const QString& text, bool isShown);

    /// There is something to click on in the innermost open link.
    void AddContent();

    /// Ends the innermost link. Nothing where there was nothing to click on.
    std::optional<HtmlLink> End();

    /// Adds a link to the list, unless it is there.
    void Keep(HtmlLink link);

    /// The list.
    std::vector<HtmlLink> Take() { return std::move(kept_); }

private:
    struct OpenLink {
        HtmlLink link;
        bool hasContent = false;
    };

    LinkNumbers& numbers_;
    std::vector<OpenLink> open_; // the innermost one behind
    std::vector<HtmlLink> kept_;
    QSet<std::pair<QString, QString>> keys_; // of kept_: where they lead, and what they show
};

} // namespace quellbox
