#include "console/TableWriter.h"

#include "mail/DisplayText.h"
#include "mail/TextWidth.h"
#include "messages/TableLines.h"

#include <QCoreApplication>

#include <algorithm>
#include <exception>

namespace quellbox {

namespace {

constexpr size_t rowsThatDecide = 500;
constexpr qint64 longestWaitMs = 300;

// Longer texts of a message are the exception, and a terminal has no room for three of them.
constexpr int widestText = 32;

} // namespace

TableWriter::TableWriter(Session& session, OutputForm form, TableColumns columns)
    : session_(session), output_(session), form_(form), columns_(std::move(columns)) {
    sinceFirst_.start();
}

// A head alone would look like an empty table where there is an error.
TableWriter::~TableWriter() {
    const bool isAnswer = std::uncaught_exceptions() == 0;
    if (isAnswer || hasBegun_ || !first_.empty()) {
        Flush();
    }
}

void TableWriter::Add(const QStringList& cells) {
    if (form_ == OutputForm::Text && !hasBegun_) {
        first_.push_back(cells);
        if (first_.size() == rowsThatDecide || sinceFirst_.hasExpired(longestWaitMs)) {
            BeginTable();
        }
        return;
    }
    if (!hasBegun_) {
        BeginTable();
    }
    output_.Append(form_ == OutputForm::Csv    ? CsvLine(columns_, cells)
                   : form_ == OutputForm::Json ? JsonLine(columns_, cells)
                                               : TextLine(cells));
}

void TableWriter::Flush() {
    const bool hasRows = hasBegun_ || !first_.empty();
    if (!hasBegun_ && (hasRows || form_ == OutputForm::Csv)) {
        BeginTable();
    }
    output_.Flush();
}

// A table as text that has no rows says so by being empty; one as CSV has its head.
void TableWriter::BeginTable() {
    hasBegun_ = true;
    if (form_ == OutputForm::Csv) {
        output_.Append(CsvHeader(columns_));
    }
    if (form_ != OutputForm::Text) {
        return;
    }
    QStringList headers;
    for (const TableColumn& column : columns_) {
        headers.append(column.header);
        widths_.push_back(ColumnsOf(column.header));
    }
    for (const QStringList& cells : first_) {
        for (size_t column = 0; column < widths_.size(); ++column) {
            const int width = ColumnsOf(CleanseForDisplay(ShownText(cells.value(static_cast<qsizetype>(column)))));
            widths_[column] = std::max(widths_[column], std::min(width, widestText));
        }
    }
    for (size_t column = 0; hasWideColumns_ && column < widths_.size(); ++column) {
        widths_[column] = columns_[column].isNumber ? widths_[column] : widestText;
    }
    output_.Append(TextLine(headers));
    for (const QStringList& cells : std::exchange(first_, {})) {
        output_.Append(TextLine(cells));
    }
}

QString TableWriter::TextLine(const QStringList& cells) const {
    QString line;
    for (size_t column = 0; column < columns_.size(); ++column) {
        const QString text = CleanseForDisplay(ShownText(cells.value(static_cast<qsizetype>(column))));
        const bool isLast = column + 1 == columns_.size();
        if (columns_[column].isNumber) {
            line += QString(std::max(0, widths_[column] - ColumnsOf(text)), QLatin1Char(' ')) + text;
        } else {
            line += isLast ? text : FitColumns(text, widths_[column]);
        }
        line += isLast ? QLatin1String("\n") : QLatin1String("  ");
    }
    return line;
}

void AddFormOptions(QCommandLineParser& parser) {
    parser.addOptions(
        {{QStringLiteral("csv"),
          QCoreApplication::translate("quellbox", "Print a table for spreadsheets (RFC 4180, UTF-8).")},
         {QStringLiteral("json"), QCoreApplication::translate("quellbox", "Print a JSON object in each line.")}});
}

OutputForm ReadForm(const QCommandLineParser& parser) {
    const bool isCsv = parser.isSet(QStringLiteral("csv"));
    const bool isJson = parser.isSet(QStringLiteral("json"));
    if (isCsv && isJson) {
        throw UsageError(QCoreApplication::translate("quellbox", "--csv and --json exclude each other."));
    }
    return isCsv ? OutputForm::Csv : isJson ? OutputForm::Json : OutputForm::Text;
}

} // namespace quellbox
