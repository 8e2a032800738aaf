#include "messages/OverviewTable.h"

#include "messages/TableText.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>

namespace quellbox {

namespace {

constexpr std::array<const char*, overviewKinds.size()> groupKeys{"day", "scl", "domain", "to", "subject"};

const OverviewBar& BarAt(const OverviewPicture& picture, OverviewPlace place) {
    return picture.bars[static_cast<size_t>(place.bar)];
}

QString TabbedLine(const QStringList& cells) {
    QStringList harmless;
    for (QString cell : cells) {
        cell.replace(u'\t', u' ').replace(u'\n', u' ').replace(u'\r', u' ');
        harmless.append(HarmlessInSpreadsheet(cell));
    }
    return harmless.join(u'\t') + u'\n';
}

} // namespace

const MessageGroup& GroupAt(const OverviewPicture& picture, OverviewPlace place) {
    const OverviewBar& bar = BarAt(picture, place);
    return place.part == OverviewPlace::whole ? bar.group : bar.parts[static_cast<size_t>(place.part)].group;
}

qint64 CountAt(const OverviewPicture& picture, OverviewPlace place) {
    const OverviewBar& bar = BarAt(picture, place);
    return place.part == OverviewPlace::whole ? bar.Count() : bar.parts[static_cast<size_t>(place.part)].count;
}

OverviewPlace PlaceWith(const OverviewPicture& picture, const MessageGroup& group) {
    for (size_t bar = 0; bar < picture.bars.size(); ++bar) {
        const OverviewBar& found = picture.bars[bar];
        if (found.group == group) {
            return {static_cast<int>(bar)};
        }
        const auto part = std::find_if(found.parts.begin(), found.parts.end(),
                                       [&group](const OverviewPart& other) { return other.group == group; });
        if (part != found.parts.end()) {
            return {static_cast<int>(bar), static_cast<int>(part - found.parts.begin())};
        }
    }
    return {};
}

QString NameAt(const OverviewPicture& picture, OverviewPlace place) {
    const OverviewBar& bar = BarAt(picture, place);
    if (picture.kind == OverviewKind::Levels) {
        return QCoreApplication::translate("quellbox", "rating %1").arg(bar.label);
    }
    if (place.part == OverviewPlace::whole || picture.kind != OverviewKind::Days) {
        return bar.label;
    }
    const int series = bar.parts[static_cast<size_t>(place.part)].series;
    return QCoreApplication::translate("quellbox", "%1, rating %2").arg(bar.label, picture.series.value(series));
}

void OverviewTable::SetPicture(const OverviewPicture& picture) {
    beginResetModel();
    picture_ = picture;
    places_.clear();
    for (size_t bar = 0; bar < picture_.bars.size(); ++bar) {
        for (size_t part = 0; part < picture_.bars[bar].parts.size(); ++part) {
            places_.push_back({static_cast<int>(bar), static_cast<int>(part)});
        }
    }
    endResetModel();
}

OverviewPlace OverviewTable::PlaceOf(int row) const {
    return row < 0 || row >= rowCount() ? OverviewPlace() : places_[static_cast<size_t>(row)];
}

int OverviewTable::RowOf(OverviewPlace place) const {
    const auto found = std::find_if(places_.begin(), places_.end(), [place](const OverviewPlace& other) {
        return other.bar == place.bar && (place.part == OverviewPlace::whole || other.part == place.part);
    });
    return found == places_.end() ? -1 : static_cast<int>(found - places_.begin());
}

int OverviewTable::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(places_.size());
}

int OverviewTable::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(Columns().size());
}

QVariant OverviewTable::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const bool isNumber = Columns()[static_cast<size_t>(index.column())].isNumber;
    if (role == Qt::TextAlignmentRole) {
        return int{Qt::AlignVCenter} | int{isNumber ? Qt::AlignRight : Qt::AlignLeft};
    }
    return role == Qt::DisplayRole ? QVariant(CellsOf(index.row()).value(index.column())) : QVariant();
}

QVariant OverviewTable::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= columnCount()) {
        return {};
    }
    return Columns()[static_cast<size_t>(section)].header;
}

TableColumns OverviewTable::Columns() const {
    const auto kind = static_cast<size_t>(picture_.kind);
    TableColumns columns{{QLatin1String(groupKeys[kind]), GroupCaptionOf(picture_.kind), false}};
    if (picture_.kind == OverviewKind::Days) {
        columns.push_back({QStringLiteral("scl"), GroupCaptionOf(OverviewKind::Levels), false});
    }
    columns.push_back({QStringLiteral("count"), QCoreApplication::translate("quellbox", "Messages"), true});
    return columns;
}

QStringList OverviewTable::CellsOf(int row) const {
    const OverviewPlace place = PlaceOf(row);
    const OverviewBar& bar = BarAt(picture_, place);
    const OverviewPart& part = bar.parts[static_cast<size_t>(place.part)];
    QStringList cells{bar.label};
    if (picture_.kind == OverviewKind::Days) {
        cells.append(picture_.series.value(part.series));
    }
    return cells << QString::number(part.count);
}

QString TabbedText(const OverviewTable& table) {
    QStringList headers;
    for (const TableColumn& column : table.Columns()) {
        headers.append(column.header);
    }
    QString text = TabbedLine(headers);
    for (int row = 0; row < table.rowCount(); ++row) {
        text += TabbedLine(table.CellsOf(row));
    }
    return text;
}

QString CsvText(const OverviewTable& table) {
    const TableColumns columns = table.Columns();
    QString text = CsvHeader(columns);
    for (int row = 0; row < table.rowCount(); ++row) {
        text += CsvLine(columns, table.CellsOf(row));
    }
    return text;
}

NextRow CellsOf(const OverviewTable& table) {
    const auto rows = std::make_shared<std::vector<QStringList>>();
    for (int row = 0; row < table.rowCount(); ++row) {
        rows->push_back(table.CellsOf(row));
    }
    return [rows, next = size_t{0}](QStringList& cells) mutable {
        if (next == rows->size()) {
            return false;
        }
        cells = (*rows)[next++];
        return true;
    };
}

} // namespace quellbox
