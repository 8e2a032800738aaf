#include "app/QuickDesk.h"

#include "app/ContentsPane.h"
#include "app/ListDesk.h"
#include "app/MainMenus.h"
#include "app/MessageListView.h"
#include "app/PanesLayout.h"
#include "app/WindowJobs.h"
#include "platform/RuntimeError.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QKeyEvent>

#include <utility>

namespace quellbox {

namespace {

// So many rows are made ready within a few milliseconds, so that no key waits for longer.
constexpr int rowsOfSlice = 2000;

} // namespace

QuickDesk::QuickDesk(const WindowParts& parts, ListDesk& list, PanesLayout& panes)
    : parts_(parts), list_(list), fraQuick(new QWidget(&parts.window)), txtQuick(new QLineEdit(fraQuick)),
      lblQuick(new QLabel(fraQuick)) {
    MakeRow(panes);
    txtQuick->installEventFilter(this);
    connect(txtQuick, &QLineEdit::textChanged, this, [this] { parts_.errors.Guard([this] { txtQuick_Change(); }); });
    connect(txtQuick, &QLineEdit::returnPressed, this, parts_.errors.Guarded(this, &QuickDesk::GoToList));
    connect(&parts_.model, &MessageListModel::CountsChanged, this, &QuickDesk::ShowCounts);
    connect(&parts_.jobs, &WindowJobs::JobEnded, this, parts_.errors.Guarded(this, &QuickDesk::NarrowIfDue));
    prepare_.callOnTimeout(this, &QuickDesk::PrepareSlice);
}

void QuickDesk::MakeRow(PanesLayout& panes) {
    fraQuick->setObjectName(QStringLiteral("fraQuick"));
    txtQuick->setObjectName(QStringLiteral("txtQuick"));
    txtQuick->setAccessibleName(tr("Filter by text"));
    txtQuick->setClearButtonEnabled(true);
    lblQuick->setObjectName(QStringLiteral("lblQuick"));
    lblQuick->setTextFormat(Qt::PlainText);
    lblQuick->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* caption = new QLabel(tr("Messages with these words:"), fraQuick);
    caption->setObjectName(QStringLiteral("lblQuickWords"));
    caption->setBuddy(txtQuick);
    auto* row = new QHBoxLayout(fraQuick);
    constexpr int margin = 3; // pixels
    row->setContentsMargins(margin, margin, margin, margin);
    row->addWidget(caption);
    row->addWidget(txtQuick, 1);
    row->addWidget(lblQuick);
    fraQuick->hide();
    panes.AddAboveList(*fraQuick);
    QWidget::setTabOrder(txtQuick, &parts_.list);
}

void QuickDesk::mnuEditQuick_Click() {
    parts_.menus.Entry("mnuEditQuick").isChecked() ? Open() : Close();
}

void QuickDesk::Open() {
    fraQuick->show();
    ShowCounts();
    list_.ShowCommands();
    txtQuick->setFocus();
}

void QuickDesk::Close() {
    parts_.menus.Entry("mnuEditQuick").setChecked(false);
    fraQuick->hide();
    txtQuick->clear();
    prepare_.stop();
    parts_.model.ForgetNarrowing();
    list_.ShowCommands();
    parts_.list.setFocus();
}

bool QuickDesk::ClosesNow() const {
    return !fraQuick->isHidden();
}

bool QuickDesk::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = watched == txtQuick && event->type() == QEvent::KeyPress;
    if (!isKey || static_cast<const QKeyEvent*>(event)->key() != Qt::Key_Down) {
        return QObject::eventFilter(watched, event);
    }
    parts_.errors.Guard([this] { GoToList(); });
    return true;
}

// The next key is for a message, which is to be seen: the first row where none is selected.
void QuickDesk::GoToList() {
    parts_.list.setFocus();
    const int row = parts_.list.SelectedRow();
    if (row >= 0 && parts_.list.IsSelected(row)) {
        parts_.list.scrollTo(parts_.model.index(row, 0));
    } else if (parts_.model.Count() > 0 && parts_.jobs.MakeWay()) {
        parts_.list.SelectOnly(0);
        list_.ShowSelected();
    }
}

// No word gets lost for a job that just runs: what was typed narrows the list when it has ended.
void QuickDesk::txtQuick_Change() {
    isDue_ = !parts_.jobs.MakeWay();
    if (!isDue_) {
        Narrow();
    }
}

void QuickDesk::NarrowIfDue() {
    if (isDue_ && parts_.jobs.IsIdle()) {
        Narrow();
    }
}

void QuickDesk::Narrow() {
    isDue_ = false;
    const int selectedBefore = parts_.state.SelectedCount;
    parts_.list.Narrow(txtQuick->text());
    parts_.state.FindPosition = 0; // it is the number of a row
    ShowCounts();
    ShowStatus();
    if (parts_.state.SelectedCount != selectedBefore) {
        parts_.contents.Clear();
    }
}

// A box at each letter would end the typing, so what is wrong with the selection stands below the list.
void QuickDesk::ShowStatus() {
    try {
        list_.UpdateSelectionStatus();
    } catch (const RuntimeError& error) {
        parts_.panels.SetInfo(error.Text());
    }
}

void QuickDesk::ShowCounts() {
    if (fraQuick->isHidden()) {
        return;
    }
    prepare_.start();
    const int total = parts_.model.TotalCount();
    const QString text = tr("%1 of %2").arg(parts_.model.Count()).arg(total);
    const QString widest = tr("%1 of %2").arg(total).arg(total);
    lblQuick->setMinimumWidth(lblQuick->fontMetrics().horizontalAdvance(widest)); // the field keeps its width
    if (std::exchange(counts_, text) == text) {
        return;
    }
    lblQuick->setText(text);
    txtQuick->setAccessibleDescription(text);
    QAccessibleEvent event(lblQuick, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

void QuickDesk::PrepareSlice() {
    if (!parts_.model.PrepareToNarrow(rowsOfSlice)) {
        prepare_.stop();
    }
}

} // namespace quellbox
