#pragma once

#include <QString>

#include <vector>

namespace quellbox {

/// Puts texts of a page in lines as plain text: blanks collapsed, paragraphs divided by blank lines, quotes marked with
/// "> ", lists indented, the cells of a simple row of a table divided by bars on one line.
class TextFlow {
public:
    /// Adds text. Outside of preformatted text any blanks are one space, or none at the beginning of a line.
    void Add(QStringView text, bool keepsBlanks = false);

    /// Adds a word that stands for something, such as "[1]", with a space before it where text stands there.
    void AddMark(const QString& text);

    /// The next text begins a new line, or a new paragraph.
    void EndLine();
    void EndParagraph();

    /// A line ends there, also without a text in it.
    void BreakLine();

    void BeginQuote();
    void EndQuote();

    /// A list begins, or ends; `isNumbered` counts its items from `first`.
    void BeginList(bool isNumbered, int first);
    void EndList();
    void BeginItem();

    /// A heading begins, or ends; `level` counts from 1.
    void BeginHeading(int level);
    void EndHeading();

    void BeginRow();
    void BeginCell();
    void EndRow();

    qsizetype Size() const { return text_.size(); }

    /// Everything so far, with LF line ends, also at the end of the last line.
    QString Take();

private:
    enum class Gap { None, Line, Paragraph };

    struct List {
        bool isNumbered = false;
        int next = 1;
    };

    struct Row {
        qsizetype line = -1; // in which its text stands so far; -1 without any
        bool hasCell = false;
    };

    void AddPreformatted(QStringView text);
    void AddWord(QStringView word);
    void OpenLine();
    void NewLine();
    void WritePrefix();

    QString text_;
    QString marker_;  // of the item that begins with the next text
    QString heading_; // the mark of a heading that begins with the next line
    std::vector<List> lists_;
    std::vector<Row> rows_;
    Gap gap_ = Gap::None;
    qsizetype lineStart_ = 0; // of the text in the current line, behind its prefix
    qsizetype line_ = 0;      // its number
    int quotes_ = 0;
    int gapQuotes_ = 0;   // the fewest quotes of where a paragraph ended
    bool isEmpty_ = true; // the line has no text yet
    bool wantsSpace_ = false;
    bool wantsBar_ = false; // between two cells
};

} // namespace quellbox
