#include "dialogs/frmFind.h"

#include "messages/MessageRow.h"
#include "ui_frmFind.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QMouseEvent>

namespace quellbox {

frmFind::frmFind(const SettingsStore& store, AppState& state, RefreshTimer& timer, QWidget* parent)
    : QDialog(parent), state_(state), timer_(timer), history_(store), ui_(new Ui::frmFind) {
    ui_->setupUi(this);
    // The parts of a combo box do not take over its name.
    for (QWidget* part :
         {static_cast<QWidget*>(ui_->cboFind->lineEdit()), static_cast<QWidget*>(ui_->cboFind->view())}) {
        part->setAccessibleName(ui_->cboFind->accessibleName());
    }
    // What is searched for is what was typed, and typing the text of an entry does not pick the entry.
    ui_->cboFind->setCompleter(nullptr);
    disconnect(ui_->cboFind->lineEdit(), &QLineEdit::returnPressed, ui_->cboFind, nullptr);
    disconnect(ui_->cboFind->lineEdit(), &QLineEdit::editingFinished, ui_->cboFind, nullptr);
    optField.addButton(ui_->optField0, ColumnDate);
    optField.addButton(ui_->optField2, ColumnFrom);
    optField.addButton(ui_->optField3, ColumnSubject);
    optField.addButton(ui_->optField4, ColumnSize);
    ShowTexts();
    connect(ui_->cboFind, &QComboBox::editTextChanged, this, &frmFind::cboFind_Change);
    connect(ui_->cboFind, &QComboBox::currentIndexChanged, this, &frmFind::cboFind_Click);
    connect(ui_->cboFind, &QComboBox::activated, this, &frmFind::cboFind_Click);
    connect(ui_->btnOK, &QPushButton::clicked, this, &frmFind::btnOK_Click);
    connect(ui_->btnCancel, &QPushButton::clicked, this, &frmFind::reject);
    connect(ui_->btnClear, &QPushButton::clicked, this, &frmFind::btnClear_Click);
    connect(&optField, &QButtonGroup::idToggled, this, [this](int column, bool chosen) {
        if (chosen) {
            optField_Click(column);
        }
    });
    ui_->cboFind->installEventFilter(this);
    ui_->cboFind->lineEdit()->installEventFilter(this);
    UpdateOK();
}

frmFind::~frmFind() = default;

void frmFind::Prepare() {
    setWindowTitle(state_.FindAll != 0 ? tr("Find All") : tr("Find"));
    ShowField();
    ui_->cboFind->setFocus();
    ui_->cboFind->lineEdit()->selectAll();
    UpdateOK();
}

QString frmFind::Text() const {
    return ui_->cboFind->currentText();
}

void frmFind::ShowTexts() {
    ui_->cboFind->clear();
    ui_->cboFind->addItems(history_.Texts());
    ui_->cboFind->setCurrentIndex(-1); // a filled list picks its first entry by itself
    ui_->cboFind->clearEditText();
    listIndex_ = -1;
}

// A column that no button stands for leaves all of them released.
void frmFind::ShowField() {
    optField.setExclusive(false);
    for (QAbstractButton* button : optField.buttons()) {
        button->setChecked(optField.id(button) == state_.HeaderField);
    }
    optField.setExclusive(true);
}

void frmFind::cboFind_Change() {
    if (Text() != ui_->cboFind->itemText(listIndex_)) {
        listIndex_ = -1;
    }
    UpdateOK();
}

void frmFind::cboFind_Click(int index) {
    listIndex_ = index;
    UpdateOK();
}

void frmFind::UpdateOK() {
    ui_->btnOK->setEnabled(!Text().trimmed().isEmpty());
}

void frmFind::optField_Click(int column) {
    state_.HeaderField = static_cast<qint16>(column);
}

/// Without a text there is nothing to accept, and the dialog is cancelled.
bool frmFind::TakeText() {
    const QString text = Text().trimmed();
    if (text != Text()) {
        ui_->cboFind->setEditText(text);
    }
    if (text.isEmpty()) {
        reject();
        return false;
    }
    return true;
}

void frmFind::btnOK_Click() {
    if (!TakeText()) {
        return;
    }
    const QString text = Text();
    if (history_.Add(text)) {
        ui_->cboFind->addItem(text);
        listIndex_ = -1; // a first entry is picked by itself
    }
    accept();
}

void frmFind::cboFind_DblClick() {
    if (TakeText()) {
        accept();
    }
}

void frmFind::btnClear_Click() {
    if (listIndex_ >= 0) {
        history_.Remove(listIndex_);
    } else {
        history_.Clear();
    }
    ShowTexts();
    ui_->cboFind->setFocus();
}

bool frmFind::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate && !hold_) {
        hold_.emplace(timer_);
    } else if (event->type() == QEvent::WindowDeactivate) {
        hold_.reset();
    }
    return QDialog::event(event);
}

// The event that deactivates a window may come long after it was hidden, or never.
void frmFind::hideEvent(QHideEvent* event) {
    hold_.reset();
    QDialog::hideEvent(event);
}

bool frmFind::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        UpdateOK();
    } else if (watched == ui_->cboFind->lineEdit() && event->type() == QEvent::MouseButtonDblClick &&
               static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        cboFind_DblClick();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace quellbox
