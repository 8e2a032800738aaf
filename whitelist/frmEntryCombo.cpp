#include "whitelist/frmEntryCombo.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace quellbox {

EntryCombo::EntryCombo(QWidget* parent) : QWidget(parent), edit_(new QLineEdit(this)), list_(new QListWidget(this)) {
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
            list_->setCurrentRow(-1);
            Q_EMIT Change();
        }
    });
    const auto pick = [this](const QListWidgetItem* item) {
        if (!IsLocked()) {
            Pick(list_->row(item));
        }
    };
    connect(list_, &QListWidget::itemPressed, this, pick);
}

void EntryCombo::SetEntries(const QStringList& entries) {
    list_->clear();
    list_->addItems(entries);
}

int EntryCombo::ListIndex() const {
    const QListWidgetItem* item = list_->currentItem();
    return item != nullptr && item->isSelected() ? list_->row(item) : -1;
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
        // Without selection a press would still take the selected entry's place as the current one.
        const bool isPress = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
        return isPress && IsLocked();
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
