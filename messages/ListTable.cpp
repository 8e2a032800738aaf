#include "messages/ListTable.h"

#include <QCoreApplication>

#include <array>
#include <memory>

namespace quellbox {

namespace {

struct ShownColumn {
    Column column;
    const char* key;
};

constexpr std::array<ShownColumn, 6> shownColumns{{{ColumnDate, "date"},
                                                   {ColumnTo, "to"},
                                                   {ColumnFrom, "from"},
                                                   {ColumnSubject, "subject"},
                                                   {ColumnSize, "size"},
                                                   {ColumnScl, "scl"}}};

} // namespace

TableColumns ListTableColumns(bool ratesByNumber) {
    TableColumns columns;
    for (const ShownColumn& shown : shownColumns) {
        const QString header = MessageListModel::CaptionOf(shown.column);
        const bool isNumber = shown.column == ColumnSize || (shown.column == ColumnScl && ratesByNumber);
        columns.push_back({QLatin1String(shown.key), header, isNumber});
    }
    columns.push_back({QStringLiteral("file"), QCoreApplication::translate("quellbox", "File name"), false});
    columns.push_back({QStringLiteral("sender"), QCoreApplication::translate("quellbox", "Envelope sender"), false});
    return columns;
}

QStringList CellsOf(const MessageRow& row) {
    QStringList cells;
    for (const ShownColumn& shown : shownColumns) {
        cells.append(row.Cell(shown.column));
    }
    return cells << row.Key() << row.Tag();
}

std::vector<MessageRow> CopyOfRows(const MessageListModel& model) {
    std::vector<MessageRow> rows;
    rows.reserve(static_cast<size_t>(model.Count()));
    for (int row = 0; row < model.Count(); ++row) {
        rows.push_back(model.Row(row));
    }
    return rows;
}

NextRow CellsOf(std::vector<MessageRow> rows) {
    const auto held = std::make_shared<const std::vector<MessageRow>>(std::move(rows));
    return [held, next = size_t{0}](QStringList& cells) mutable {
        if (next == held->size()) {
            return false;
        }
        cells = CellsOf((*held)[next++]);
        return true;
    };
}

} // namespace quellbox
