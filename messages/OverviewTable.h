#pragma once

#include "messages/Overview.h"
#include "messages/TableLines.h"

#include <QAbstractTableModel>

namespace quellbox {

/// A place in a picture: a part of a bar, or the whole bar.
struct OverviewPlace {
    static constexpr int whole = -1;

    int bar = -1; ///< -1 is nowhere
    int part = whole;

    bool operator==(const OverviewPlace&) const = default;
};

/// The messages at a place, which has to be one of the picture.
const MessageGroup& GroupAt(const OverviewPicture& picture, OverviewPlace place);
qint64 CountAt(const OverviewPicture& picture, OverviewPlace place);

/// The place that stands for those messages, the whole bar before its parts; nowhere when the picture has none.
OverviewPlace PlaceWith(const OverviewPicture& picture, const MessageGroup& group);

/// What is said of a place where it cannot be seen, as in "2026-06-15, rating 9".
QString NameAt(const OverviewPicture& picture, OverviewPlace place);

/// A picture as a table: a row for each part of each bar.
class OverviewTable : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void SetPicture(const OverviewPicture& picture);
    const OverviewPicture& Picture() const { return picture_; }

    OverviewPlace PlaceOf(int row) const;

    /// The first row of that place, or -1.
    int RowOf(OverviewPlace place) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The columns and the cells of a row, for other programs.
    TableColumns Columns() const;
    QStringList CellsOf(int row) const;

private:
    OverviewPicture picture_;
    std::vector<OverviewPlace> places_;
};

/// The whole table as text whose cells are divided by tabs, with headers, for spreadsheets that take it from the
/// clipboard; and as CSV (RFC 4180). What a spreadsheet would calculate is made harmless.
QString TabbedText(const OverviewTable& table);
QString CsvText(const OverviewTable& table);

/// The rows one after the other, as they are now.
NextRow CellsOf(const OverviewTable& table);

} // namespace quellbox
