#include "console/ListWriter.h"

#include "messages/ListTable.h"
#include "settings/ChosenProfile.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

// On a terminal there is no room for the envelope sender as well; the name of the file comes last and is whole.
constexpr int columnsOfText = 7;

TableColumns ColumnsOf(OutputForm form, bool ratesByNumber) {
    TableColumns columns = ListTableColumns(ratesByNumber);
    if (form == OutputForm::Text) {
        columns.resize(columnsOfText);
    }
    return columns;
}

} // namespace

ListWriter::ListWriter(Session& session, const QCommandLineParser& parser) : names_(session), form_(ReadForm(parser)) {
    const bool withNul = parser.isSet(QStringLiteral("print0"));
    const bool onlyNames = withNul || parser.isSet(QStringLiteral("names"));
    if (onlyNames && form_ != OutputForm::Text) {
        throw UsageError(
            QCoreApplication::translate("quellbox", "--names and --print0 cannot be combined with --csv or --json."));
    }
    nameEnd_ = withNul ? '\0' : '\n';
    if (!onlyNames) {
        const bool ratesByNumber = ChosenProfile(session.State()).RatesByNumber();
        table_ = std::make_unique<TableWriter>(session, form_, ColumnsOf(form_, ratesByNumber));
    }
}

void ListWriter::UseWideColumns() {
    if (table_) {
        table_->UseWideColumns();
    }
}

void ListWriter::Add(const MessageRow& row) {
    if (table_) {
        table_->Add(CellsOf(row));
    } else {
        const QByteArray line = BytesOfName(row.Key()) + nameEnd_;
        names_.Append(QByteArrayView(line));
    }
}

void ListWriter::Flush() {
    if (table_) {
        table_->Flush();
    } else {
        names_.Flush();
    }
}

void AddListFormOptions(QCommandLineParser& parser) {
    parser.addOptions(
        {{QStringLiteral("names"), QCoreApplication::translate("quellbox", "Print only names, a line for each.")},
         {QStringLiteral("print0"),
          QCoreApplication::translate("quellbox", "Print only names, each ended by a NUL.")}});
}

} // namespace quellbox
