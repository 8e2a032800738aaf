#include "mail/TextFlow.h"

#include "mail/DisplayText.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quellbox {

namespace {

// Deeper ones are not told apart, so that a prefix stays short.
constexpr int mostQuotes = 20;
constexpr qsizetype mostLists = 10;
// Where a line has become as long as this, the next cell gets a line of its own.
constexpr qsizetype longestRow = 120;

QString Prefix(int quotes) {
    return QStringLiteral("> ").repeated(std::min(quotes, mostQuotes));
}

/// A blank of HTML, or a space that does not break: pages use it to fill cells and paragraphs that are empty.
bool IsPageBlank(QChar character) {
    return character == u' ' || character == u'\n' || character == u'\t' || character == u'\r' || character == u'\f' ||
           character == QChar(QChar::Nbsp);
}

/// Whether nothing of some words is seen: it fills the preview of a mailbox, say.
bool AreUnseen(QStringView word) {
    return std::all_of(word.begin(), word.end(),
                       [](QChar character) { return character == QChar(0x3000) || IsUnseen(character); });
}

bool IsAsciiWord(QChar character) {
    return character > u' ' && character < QChar(0x7F);
}

/// The end of the word that begins there. Of words in ASCII, that of all which are divided by one space: to add one
/// after the other takes several times as long.
qsizetype EndOfWords(QStringView text, qsizetype at) {
    const bool isAscii = at < text.size() && IsAsciiWord(text[at]);
    for (; at < text.size(); ++at) {
        const bool goesOn = isAscii && text[at] == u' ' && at + 1 < text.size() && IsAsciiWord(text[at + 1]);
        if (!goesOn && IsPageBlank(text[at])) {
            return at;
        }
    }
    return at;
}

} // namespace

void TextFlow::Add(QStringView text, bool keepsBlanks) {
    if (keepsBlanks) {
        AddPreformatted(text);
        return;
    }
    qsizetype at = 0;
    while (at < text.size()) {
        const qsizetype end = EndOfWords(text, at);
        if (end > at) {
            AddWord(text.sliced(at, end - at));
        }
        at = end;
        while (at < text.size() && IsPageBlank(text[at])) {
            wantsSpace_ = true;
            ++at;
        }
    }
}

void TextFlow::AddPreformatted(QStringView text) {
    while (!text.isEmpty()) {
        const qsizetype end = text.indexOf(u'\n');
        const QStringView line = end < 0 ? text : text.first(end);
        if (line.trimmed().isEmpty()) {
            wantsSpace_ = wantsSpace_ || !line.isEmpty();
        } else {
            OpenLine();
            text_ += wantsSpace_ && !isEmpty_ ? QStringLiteral(" ") : QString();
            wantsSpace_ = false;
            text_ += line;
            isEmpty_ = false;
        }
        if (end >= 0) {
            BreakLine();
        }
        text = end < 0 ? QStringView() : text.sliced(end + 1);
    }
}

void TextFlow::AddWord(QStringView word) {
    if (AreUnseen(word)) {
        return;
    }
    OpenLine();
    if (wantsSpace_ && !isEmpty_) {
        text_ += u' ';
    }
    wantsSpace_ = false;
    text_ += word;
    isEmpty_ = false;
}

void TextFlow::AddMark(const QString& text) {
    wantsSpace_ = true;
    AddWord(text);
}

/// Makes up for what was put off until there is a text.
void TextFlow::OpenLine() {
    const Gap gap = std::exchange(gap_, Gap::None);
    if (gap != Gap::None && !isEmpty_) {
        NewLine();
    }
    if (gap == Gap::Paragraph && !text_.isEmpty() && !text_.endsWith(QLatin1String("\n\n"))) {
        text_ += Prefix(gapQuotes_).trimmed();
        NewLine();
    }
    if (isEmpty_ && text_.size() == lineStart_) {
        WritePrefix();
    }
    if (std::exchange(wantsBar_, false) && !isEmpty_) {
        text_ += QLatin1String(" | ");
        wantsSpace_ = false;
    }
    for (auto row = rows_.rbegin(); row != rows_.rend() && row->line < 0; ++row) {
        row->line = line_;
    }
}

void TextFlow::WritePrefix() {
    const auto depth = std::min(static_cast<qsizetype>(lists_.size()), mostLists);
    text_ += Prefix(quotes_);
    if (!marker_.isEmpty()) {
        text_ += QString(2 * (depth - 1), u' ') + marker_;
        marker_.clear();
    } else {
        text_ += QString(2 * depth, u' ');
    }
    text_ += std::exchange(heading_, {});
    lineStart_ = text_.size();
    wantsSpace_ = false;
}

void TextFlow::NewLine() {
    text_ += u'\n';
    lineStart_ = text_.size();
    isEmpty_ = true;
    wantsSpace_ = false;
    wantsBar_ = false;
    ++line_;
}

// Between a bar and the first text of its cell there is no line end.
void TextFlow::EndLine() {
    if (!wantsBar_) {
        gap_ = std::max(gap_, Gap::Line);
    }
}

// An item begins behind its marker, even if that is a paragraph.
void TextFlow::EndParagraph() {
    if (wantsBar_ || !marker_.isEmpty()) {
        return;
    }
    gapQuotes_ = gap_ == Gap::Paragraph ? std::min(gapQuotes_, quotes_) : quotes_;
    gap_ = Gap::Paragraph;
}

// Of many in a row no more than a blank line remains.
void TextFlow::BreakLine() {
    if (gap_ == Gap::None) {
        EndLine();
    } else {
        EndParagraph();
    }
}

void TextFlow::BeginQuote() {
    wantsBar_ = false;
    EndParagraph();
    ++quotes_;
}

void TextFlow::EndQuote() {
    quotes_ = std::max(0, quotes_ - 1);
    EndParagraph();
}

void TextFlow::BeginList(bool isNumbered, int first) {
    wantsBar_ = false;
    if (lists_.empty()) {
        EndParagraph();
    } else {
        EndLine();
    }
    lists_.push_back({isNumbered, first});
}

void TextFlow::EndList() {
    if (!lists_.empty()) {
        lists_.pop_back();
    }
    marker_.clear();
    if (lists_.empty()) {
        EndParagraph();
    } else {
        EndLine();
    }
}

void TextFlow::BeginItem() {
    wantsBar_ = false;
    EndLine();
    if (lists_.empty()) {
        lists_.push_back({});
    }
    List& list = lists_.back();
    marker_ = list.isNumbered ? QString::number(list.next) + QStringLiteral(". ") : QStringLiteral("* ");
    list.next += list.next < std::numeric_limits<int>::max() ? 1 : 0;
}

void TextFlow::BeginHeading(int level) {
    EndParagraph();
    heading_ = QString(level, u'#') + u' ';
}

void TextFlow::EndHeading() {
    heading_.clear();
    EndParagraph();
}

void TextFlow::BeginRow() {
    EndLine();
    rows_.push_back({});
}

void TextFlow::BeginCell() {
    if (rows_.empty()) {
        EndLine();
        return;
    }
    Row& row = rows_.back();
    const bool isOnItsLine = row.line == line_ && !isEmpty_ && text_.size() - lineStart_ <= longestRow;
    if (std::exchange(row.hasCell, true) && isOnItsLine) {
        gap_ = Gap::None;
        wantsBar_ = true;
    } else {
        wantsBar_ = false;
        EndLine();
    }
}

void TextFlow::EndRow() {
    wantsBar_ = false;
    if (!rows_.empty()) {
        rows_.pop_back();
    }
    EndLine();
}

QString TextFlow::Take() {
    if (!isEmpty_) {
        NewLine();
    }
    return std::exchange(text_, {});
}

} // namespace quellbox
