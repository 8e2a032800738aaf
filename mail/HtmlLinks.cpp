#include "mail/HtmlLinks.h"

#include "mail/LinkTarget.h"

#include <algorithm>

namespace quellbox {

namespace {

constexpr size_t mostLinks = 10'000;
constexpr qsizetype mostLinkText = 300;
// Of links that lie there are kept as many again, so that none hides behind many others.
constexpr size_t mostLyingLinks = 1000;

/// Whether a link shows another host than it leads to.
bool Lies(const HtmlLink& link) {
    const QString shown = HostShownBy(link.text);
    return !shown.isEmpty() && shown != ReadLinkTarget(link.target).host;
}

} // namespace

int LinkNumbers::NumberOf(const QString& target) {
    const auto found = numbers_.constFind(target);
    if (found != numbers_.constEnd()) {
        return *found;
    }
    if (targets_.size() >= static_cast<qsizetype>(mostLinks)) {
        areMissing_ = true;
        return 0;
    }
    targets_.append(target);
    numbers_.insert(target, static_cast<int>(targets_.size()));
    return static_cast<int>(targets_.size());
}

void HtmlLinks::Begin(const QString& target, bool hasContent) {
    open_.push_back({{.text = {}, .target = target}, hasContent});
}

void HtmlLinks::AddText(const QString& text, bool isShown) {
    if (open_.empty()) {
        return;
    }
    OpenLink& open = open_.back();
    open.hasContent = open.hasContent || !text.trimmed().isEmpty();
    if (isShown) {
        open.link.text += QStringView(text).left(std::max<qsizetype>(0, mostLinkText - open.link.text.size()));
    }
}

void HtmlLinks::AddContent() {
    if (!open_.empty()) {
        open_.back().hasContent = true;
    }
}

std::optional<HtmlLink> HtmlLinks::End() {
    OpenLink ended = std::move(open_.back());
    open_.pop_back();
    if (!ended.hasContent) {
        return std::nullopt;
    }
    ended.link.text = ended.link.text.simplified();
    ended.link.number = numbers_.NumberOf(ended.link.target);
    return std::move(ended.link);
}

void HtmlLinks::Keep(HtmlLink link) {
    const bool hasRoom = kept_.size() < mostLinks || (kept_.size() < mostLinks + mostLyingLinks && Lies(link));
    if (!hasRoom) {
        return;
    }
    const auto key = std::make_pair(link.isMarked ? link.target : u'\n' + link.target, link.text);
    if (!keys_.contains(key)) {
        keys_.insert(key);
        kept_.push_back(std::move(link));
    }
}

} // namespace quellbox
