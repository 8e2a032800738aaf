#pragma once

#include "app/WindowParts.h"
#include "mail/HeaderFields.h"

#include <QObject>
#include <QPoint>

namespace quellbox {

class BusyDisplay;

/// What the user does in the list: selecting rows, looking at one, marking them as read, and what can be used then.
class ListDesk : public QObject {
    Q_OBJECT

public:
    ListDesk(const WindowParts& parts, BusyDisplay& busy);

    /// Counts the selection, fills the panels and sets what is enabled. Returns the number of selected rows.
    qint16 UpdateSelectionStatus();

    /// Deselects every row and empties the contents panes; the next search starts at the top.
    void ClearSelection();

    /// Empties the list and the contents panes.
    void ClearMessageView();

    /// Enables what can be used now.
    void ShowCommands();

    /// Whether an action can be taken back.
    void SetUndoable(bool isUndoable);

    /// Selects one row and shows its message, as a plain click does.
    void ClickRow(int row);

    /// The same for the row that is selected, when there is one.
    void ShowSelected();

    QString MessagePath(int row) const;

    /// The row of that message; -1 when the list has it no more, or not in sight.
    int RowOfPath(const QString& path) const;

    /// Fills in what bulk mode has left out of the row of a message.
    void TakeHeaders(const QString& path, const HeaderFields& headers);

    /// Sub-item index of the column that was clicked last.
    int LastColumn() const { return ClickedColumn; }

    void mnuEditSelectAll_Click();
    void mnuEditSelectNone_Click();
    void mnuEditMarkRead_Click();
    void mnuEditMarkUnread_Click();
    void mnuEditMarkAllRead_Click();
    void mnuMessageView_Click();

    /// The menus Edit and Actions open.
    void mnuEdit_Click();
    void mnuActions_Click();

Q_SIGNALS:
    /// The number of messages in the list has been told.
    void Counted(const QString& count);

private:
    void ConnectList();
    void ConnectContents();
    void lvwMessages_ItemClick(int row);
    void lvwMessages_KeyDown();
    void lvwMessages_KeyPress();
    void lvwMessages_DblClick();
    void lvwMessages_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x);
    void lvwMessages_MouseUp();
    void PopUpMessageMenu(QPoint screen);
    void OfferView();
    void ShowMessage(int row);
    void ShowWholeText();
    void ShowElsewhere(const QString& path);
    void MarkAsRead(const QString& path);
    QString KeyOfPath(const QString& path) const;
    void MarkSelected(bool unread);

    WindowParts parts_;
    BusyDisplay& busy_;
    int selectedRows_ = 0; // as last counted
    bool offersView_ = true;
    bool isUndoable_ = false;
    bool LoadOnItemClick = false;
    Qt::MouseButton LastMouseButton = Qt::NoButton;
    int ClickedColumn = 0;
};

} // namespace quellbox
