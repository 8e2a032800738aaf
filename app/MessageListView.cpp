#include "app/MessageListView.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QIcon>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace quellbox {

namespace {

/// Draws unread rows bold.
class UnreadDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->font.setBold(index.data(MessageListModel::unreadRole).toBool());
    }
};

/// The same rows as ascending ranges that neither overlap nor touch.
std::vector<RowRange> Merged(std::vector<RowRange> ranges) {
    std::sort(ranges.begin(), ranges.end(),
              [](const RowRange& left, const RowRange& right) { return left.first < right.first; });
    std::vector<RowRange> merged;
    for (const RowRange& range : ranges) {
        if (merged.empty() || range.first > merged.back().last + 1) {
            merged.push_back(range);
        } else {
            merged.back().last = std::max(merged.back().last, range.last);
        }
    }
    return merged;
}

} // namespace

MessageListView::MessageListView(MessageListModel& messages, QWidget* parent)
    : QTreeView(parent), messages_(messages), lblHint(new QLabel(this)) {
    setObjectName(QStringLiteral("lvwMessages"));
    setAccessibleName(tr("Messages"));
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setTextElideMode(Qt::ElideRight);
    setItemDelegate(new UnreadDelegate(this));
    header()->setSectionsClickable(true);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    lblHint->setObjectName(QStringLiteral("lblHint"));
    lblHint->setTextFormat(Qt::PlainText);
    lblHint->setWordWrap(true);
    lblHint->setMargin(8);
    lblHint->setAutoFillBackground(true);
    lblHint->setBackgroundRole(QPalette::ToolTipBase);
    lblHint->setForegroundRole(QPalette::ToolTipText);
    lblHint->setAttribute(Qt::WA_TransparentForMouseEvents);
    lblHint->hide();
    setModel(&messages);
    ShowSortArrow();
    FitColumns();
}

void MessageListView::ShowSortArrow() {
    for (int column = 0; column < ColumnCount; ++column) {
        const QString picture = column == sort_.SortColumn ? sort_.ArrowKey() : QStringLiteral("blank");
        const QIcon icon(QStringLiteral(":/icons/%1.svg").arg(picture));
        messages_.setHeaderData(column, Qt::Horizontal, icon, Qt::DecorationRole);
    }
}

void MessageListView::ShowHint(const QString& text) {
    lblHint->setText(text);
    setAccessibleDescription(text);
    lblHint->setVisible(!text.isEmpty());
    PlaceHint();
}

void MessageListView::PlaceHint() {
    const QRect inside = viewport()->geometry();
    const int height = std::min(lblHint->heightForWidth(inside.width()), inside.height());
    lblHint->setGeometry(inside.left(), inside.bottom() + 1 - height, inside.width(), height);
}

void MessageListView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    PlaceHint();
}

void MessageListView::SortList() {
    messages_.sort(sort_.SortKey(), sort_.order);
}

void MessageListView::lvwMessages_ColumnClick(int column) {
    if (messages_.Count() == 0) {
        return;
    }
    sort_.Click(column);
    ShowSortArrow();
    SortList();
    if (!currentIndex().isValid() || !IsSelected(currentIndex().row())) {
        selectionModel()->setCurrentIndex(messages_.index(0, 0), QItemSelectionModel::NoUpdate);
    }
    scrollTo(currentIndex());
}

int MessageListView::SelectedRow() const {
    const QModelIndex current = currentIndex();
    const std::vector<RowRange> selected = SelectedRanges();
    if (current.isValid() && (selected.empty() || IsSelected(current.row()))) {
        return current.row();
    }
    return selected.empty() ? -1 : selected.front().first;
}

std::vector<RowRange> MessageListView::SelectedRanges() const {
    std::vector<RowRange> ranges;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        ranges.push_back({range.top(), range.bottom()});
    }
    return Merged(std::move(ranges));
}

void MessageListView::AddToSelection(const std::vector<int>& rows) {
    // Qt compares each range that was selected with each that will be, which many of both make slow.
    constexpr size_t mostRangesCompared = 32;
    std::vector<RowRange> ranges = SelectedRanges();
    if (ranges.size() > mostRangesCompared) {
        selectionModel()->clearSelection();
    }
    for (const int row : rows) {
        ranges.push_back({row, row});
    }
    SelectRanges(std::move(ranges));
    const QModelIndex last = model()->index(rows.back(), 0);
    selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
    scrollTo(last);
}

/// Selects these rows and no others.
void MessageListView::SelectRanges(std::vector<RowRange> ranges) {
    const std::vector<RowRange> merged = Merged(std::move(ranges));
    QItemSelection selection; // of whole rows, since Qt takes long to widen many ranges
    for (const RowRange& range : merged) {
        selection.append(QItemSelectionRange(model()->index(range.first, 0), model()->index(range.last, ColumnScl)));
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void MessageListView::Narrow(const QString& text) {
    std::vector<int> places;
    for (const RowRange& range : SelectedRanges()) {
        for (int row = range.first; row <= range.last; ++row) {
            places.push_back(messages_.PlaceOf(row));
        }
    }
    const int currentPlace = currentIndex().isValid() ? messages_.PlaceOf(currentIndex().row()) : -1;
    if (messages_.Narrow(text)) {
        RestoreSelection(places, currentPlace);
    }
}

void MessageListView::RestoreSelection(const std::vector<int>& places, int currentPlace) {
    std::vector<RowRange> ranges;
    for (const int place : places) {
        const int row = messages_.RowAtPlace(place);
        if (row > 0 && !ranges.empty() && ranges.back().last == row - 1) {
            ranges.back().last = row;
        } else if (row >= 0) {
            ranges.push_back({row, row});
        }
    }
    // What is selected is to be seen, and what a command for one message works on.
    const int firstSelected = ranges.empty() ? -1 : ranges.front().first;
    SelectRanges(std::move(ranges));
    int currentRow = currentPlace < 0 ? -1 : messages_.RowAtPlace(currentPlace);
    if (currentRow < 0) {
        currentRow = firstSelected;
    }
    if (currentRow >= 0) {
        selectionModel()->setCurrentIndex(messages_.index(currentRow, 0), QItemSelectionModel::NoUpdate);
        scrollTo(currentIndex());
    }
}

void MessageListView::TakeFocus() {
    if (qobject_cast<const QLineEdit*>(window()->focusWidget()) == nullptr) {
        setFocus();
    }
}

void MessageListView::SelectOnly(int row) {
    const QModelIndex index = model()->index(row, 0);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
}

void MessageListView::FitColumns() {
    // The system's icon width, of which half is added to the sample texts.
    constexpr int halfIcon = 32 / 2;
    const QFontMetrics metrics(window()->font());
    const int dateWidth = metrics.horizontalAdvance(QStringLiteral("2004-09-30 23:59:59XX")) + halfIcon;
    const int sizeWidth = metrics.horizontalAdvance(QStringLiteral("  999999 ")) + halfIcon;
    const int sclWidth = metrics.horizontalAdvance(QStringLiteral(" 9 99.99 ")) + halfIcon;
    const int rest = width() - ColumnCount - verticalScrollBar()->sizeHint().width() - dateWidth - sizeWidth - sclWidth;
    const int share = std::abs(rest) / (ColumnCount - 4);
    header()->resizeSection(ColumnDate, dateWidth);
    header()->resizeSection(ColumnTo, share);
    header()->resizeSection(ColumnFrom, share);
    header()->resizeSection(ColumnSubject, share);
    header()->resizeSection(ColumnSize, sizeWidth);
    header()->resizeSection(ColumnScl, sclWidth);
    header()->setSectionHidden(ColumnBytes, true);
}

int MessageListView::ColumnAt(int x) const {
    const int section = header()->logicalIndexAt(x);
    return section < 0 ? int{ColumnScl} : section;
}

void MessageListView::mousePressEvent(QMouseEvent* event) {
    Q_EMIT MouseDown(event->button(), event->modifiers(), event->position().toPoint().x());
    QTreeView::mousePressEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid()) {
        Q_EMIT ItemClick(index.row());
    }
}

void MessageListView::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    Q_EMIT MouseUp();
}

void MessageListView::mouseDoubleClickEvent(QMouseEvent* event) {
    QTreeView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid()) {
        Q_EMIT DblClick();
    }
}

void MessageListView::keyPressEvent(QKeyEvent* event) {
    Q_EMIT KeyDown(event->key());
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isSpace = event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier;
    if (isEnter || isSpace) {
        Q_EMIT ViewRequested();
        return;
    }
    const QModelIndex before = currentIndex();
    const QItemSelection selectedBefore = selectionModel()->selection();
    QTreeView::keyPressEvent(event);
    const QModelIndex now = currentIndex();
    // At the end of the list a key that moves selects the row that it stays on.
    constexpr std::array movingKeys{Qt::Key_Up,  Qt::Key_Down,   Qt::Key_Home,
                                    Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown};
    const bool moves = std::find(movingKeys.begin(), movingKeys.end(), event->key()) != movingKeys.end();
    if (moves && now.isValid() && now == before && (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
        SelectOnly(now.row());
    }
    const bool selectionChanged = selectionModel()->selection() != selectedBefore;
    // With Ctrl a key moves the focus without selecting, or deselects the row that has it.
    const bool isSelected = now.isValid() && selectionModel()->isSelected(now);
    if (isSelected && (now != before || selectionChanged)) {
        Q_EMIT ItemClick(now.row());
    } else if (selectionChanged) {
        Q_EMIT SelectedByKey();
    }
}

void MessageListView::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() != QContextMenuEvent::Keyboard || !currentIndex().isValid()) {
        return;
    }
    const QRect cell = visualRect(currentIndex());
    Q_EMIT ContextMenuByKey(viewport()->mapToGlobal(cell.bottomLeft()));
}

} // namespace quellbox
