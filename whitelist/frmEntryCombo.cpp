#include "whitelist/frmEntryCombo.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace quellbox {

namespace {

/// A list in which the mouse always selects exactly one entry, as in a combo box: no key that is held adds to the
/// selection or takes from it, and the room below the last entry does nothing.
class EntryList : public QListWidget {
public:
    using QListWidget::QListWidget;

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent*) const override {
        const bool selects = index.isValid() && selectionMode() != NoSelection;
        return selects ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
    }
};

} // namespace

EntryCombo::EntryCombo(QWidget* parent) : QWidget(parent), edit_(new QLineEdit(this)), list_(new EntryList(this)) {
    edit_->setObjectName(QStringLiteral("cboTolerate_edit"));
    list_->setObjectName(QStringLiteral("cboTolerate_list"));
    edit_->setAccessibleName(tr("Sender or domain"));
    list_->setAccessibleName(tr("Tolerated senders"));
    list_->setUniformItemSizes(true);
    list_->setFocusPolicy(Qt::NoFocus); // one control: the keyboard stays in the entry field
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(edit_);
    column->addWidget(list_, 1);
    setFocusProxy(edit_);
    edit_->installEventFilter(this);
    list_->viewport()->installEventFilter(this);
    connect(edit_, &QLineEdit::textChanged, this, [this] {
        if (!picking_) {
            list_->selectionModel()->clear();
            Q_EMIT Change();
        }
    });
    // By a press, and by each entry that the pointer is dragged over.
    connect(list_, &QListWidget::itemSelectionChanged, this, [this] {
        if (!picking_) {
            Pick(ListIndex());
        }
    });
}

void EntryCombo::SetEntries(const QStringList& entries) {
    const int top = list_->row(list_->itemAt(list_->viewport()->rect().topLeft()));
    list_->clear();
    list_->addItems(entries);
    list_->scrollToItem(list_->item(std::min(top, Count() - 1)), QAbstractItemView::PositionAtTop);
}

void EntryCombo::BringIntoView(int index) {
    list_->scrollToItem(list_->item(index));
}

int EntryCombo::ListIndex() const {
    const QModelIndexList selected = list_->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.first().row();
}

void EntryCombo::Pick(int index) {
    if (index < 0 || index >= Count()) {
        return;
    }
    picking_ = true;
    list_->setCurrentRow(index, QItemSelectionModel::ClearAndSelect);
    edit_->setText(list_->item(index)->text());
    picking_ = false;
    Q_EMIT Click();
}

void EntryCombo::SetLocked(bool locked) {
    edit_->setReadOnly(locked);
    list_->setSelectionMode(locked ? QListWidget::NoSelection : QListWidget::SingleSelection);
}

bool EntryCombo::eventFilter(QObject* watched, QEvent* event) {
    if (watched == list_->viewport()) {
        // Without selection the mouse would still move the mark of the current entry.
        const bool isMouse = event->type() == QEvent::MouseButtonPress ||
                             event->type() == QEvent::MouseButtonDblClick || event->type() == QEvent::MouseMove;
        return isMouse && IsLocked();
    }
    if (event->type() == QEvent::FocusIn) {
        Q_EMIT GotFocus();
    }
    if (event->type() == QEvent::KeyPress && MoveInList(static_cast<QKeyEvent*>(event)->key())) {
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool EntryCombo::MoveInList(int key) {
    constexpr int page = 10;
    const int step = key == Qt::Key_Down       ? 1
                     : key == Qt::Key_Up       ? -1
                     : key == Qt::Key_PageDown ? page
                     : key == Qt::Key_PageUp   ? -page
                                               : 0;
    if (step == 0) {
        return false;
    }
    if (!IsLocked() && Count() > 0) {
        Pick(ListIndex() < 0 ? 0 : std::clamp(ListIndex() + step, 0, Count() - 1));
    }
    return true;
}

} // namespace quellbox
