#pragma once

#include "messages/SelectionStatus.h"
#include "messages/SortState.h"

#include <QLabel>
#include <QTreeView>

namespace quellbox {

/// The message list: full rows, several selectable, unread ones bold. It sorts itself when a
/// header is clicked, and turns Qt's other events into those that the desks handle.
class MessageListView : public QTreeView {
    Q_OBJECT

public:
    /// Shows this model, which outlives it.
    explicit MessageListView(MessageListModel& messages, QWidget* parent = nullptr);

    /// The selected rows as ascending ranges without overlap.
    std::vector<RowRange> SelectedRanges() const;

    /// The row that a command for one message works on; -1 when there is none.
    int SelectedRow() const;

    bool IsSelected(int row) const { return selectionModel()->isRowSelected(row); }

    /// Says something at the lower end of the list, beside what it lists; an empty text takes it away.
    void ShowHint(const QString& text);

    /// The header of a column was clicked: the list is sorted by that column, or the other way round.
    void lvwMessages_ColumnClick(int column);

    /// Sorts the rows as the arrow in the header says.
    void SortList();

    /// Selects one row alone and makes it the current one.
    void SelectOnly(int row);

    /// Selects rows besides those that are selected, in one change of the selection wherever it stays linear. The last
    /// one becomes the current row and is scrolled into view. `rows` is ascending and not empty.
    void AddToSelection(const std::vector<int>& rows);

    /// Shows only the rows that hold all words of a text, as MessageListModel::Narrow() says. What stays in sight stays
    /// selected, and the current row the current one.
    void Narrow(const QString& text);

    /// Takes the focus, but not from a field in which the user is typing.
    void TakeFocus();

    /// Gives the columns their widths: date, size and confidence by sample texts, the rest in equal shares.
    void FitColumns();

    /// Sub-item index of the column at a horizontal position in pixels.
    int ColumnAt(int x) const;

Q_SIGNALS:
    /// A mouse button goes down; Qt has not handled it yet.
    void MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x);
    void MouseUp();
    void KeyDown(int key);
    /// The keyboard changed the selection without selecting the current row.
    void SelectedByKey();
    /// Enter or Space was typed.
    void ViewRequested();
    /// A row was clicked twice with the left button.
    void DblClick();
    /// A row was clicked, or selected with the keyboard.
    void ItemClick(int row);
    /// The keyboard asks for the context menu at a point of the screen.
    void ContextMenuByKey(QPoint screen);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void ShowSortArrow();
    void SelectRanges(std::vector<RowRange> ranges);
    void RestoreSelection(const std::vector<int>& places, int currentPlace);
    void PlaceHint();

    MessageListModel& messages_;
    SortState sort_;
    QLabel* lblHint;
};

} // namespace quellbox
