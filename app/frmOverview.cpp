#include "app/frmOverview.h"

#include "mail/DisplayText.h"
#include "ui_frmOverview.h"

#include <QDateTime>
#include <QHeaderView>
#include <QLocale>
#include <QScrollBar>
#include <QShowEvent>
#include <QSignalBlocker>

namespace quellbox {

namespace {

enum UnblockedColumn { UnblockedName, UnblockedCount, UnblockedLast };

constexpr int senderRole = Qt::UserRole;

QTreeWidgetItem* ItemOf(const UnblockedSender& sender) {
    const QString last = QLocale().toString(QDateTime::fromMSecsSinceEpoch(sender.lastMs), QLocale::ShortFormat);
    auto* item =
        new QTreeWidgetItem({CleanseForDisplay(ShownText(sender.sender)), QString::number(sender.count), last});
    item->setTextAlignment(UnblockedCount, Qt::AlignRight | Qt::AlignVCenter);
    item->setData(UnblockedName, senderRole, sender.sender);
    return item;
}

QString CaptionOf(const Overview& overview) {
    const auto count = static_cast<int>(overview.count);
    if (overview.count < overview.listed) {
        const QLocale locale;
        return frmOverview::tr("Overview of %1 of %2 messages")
            .arg(locale.toString(overview.count), locale.toString(overview.listed));
    }
    return count == 1 ? frmOverview::tr("Overview of one message")
                      : frmOverview::tr("Overview of %n messages", nullptr, count);
}

} // namespace

frmOverview::frmOverview(QWidget* parent) : QDialog(parent), ui_(new Ui::frmOverview) {
    ui_->setupUi(this);
    ui_->lblBulk->hide();
    toleratingTip_ = ui_->btnTolerate->toolTip();
    MakePanels();
    PrepareList();
    connect(ui_->btnClose, &QPushButton::clicked, this, &frmOverview::close);
    connect(ui_->btnTolerate, &QPushButton::clicked, this, [this] { Q_EMIT TolerateClick(SelectedSenders()); });
}

frmOverview::~frmOverview() = default;

// The days are as wide as two of the others.
void frmOverview::MakePanels() {
    struct Cell {
        int row;
        int column;
        int columns;
    };
    constexpr std::array<Cell, overviewKinds.size()> cells{{{0, 0, 2}, {0, 2, 1}, {1, 0, 1}, {1, 1, 1}, {1, 2, 1}}};
    for (const OverviewKind kind : overviewKinds) {
        const Cell& cell = cells[static_cast<size_t>(kind)];
        auto* panel = new OverviewPanel(kind, ui_->pnlPictures);
        panels_[static_cast<size_t>(kind)] = panel;
        ui_->layPictures->addWidget(panel, cell.row, cell.column, 1, cell.columns);
        connect(panel, &OverviewPanel::Chosen, this, &frmOverview::Chosen);
        connect(panel, &OverviewPanel::SaveClick, this, &frmOverview::SaveClick);
        connect(panel, &OverviewPanel::TolerateClick, this, &frmOverview::TolerateGroupClick);
    }
    setTabOrder(&panels_.back()->LastControl(), ui_->lvwUnblocked);
    setTabOrder(ui_->lvwUnblocked, ui_->btnTolerate);
    setTabOrder(ui_->btnTolerate, ui_->btnClose);
    setTabOrder(ui_->btnClose, ui_->btnHelp);
    panels_.front()->TakeFocus();
}

void frmOverview::PrepareList() {
    QTreeWidget& list = *ui_->lvwUnblocked;
    list.header()->setStretchLastSection(false);
    list.header()->setSectionsMovable(false);
    list.header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list.header()->setSectionResizeMode(UnblockedName, QHeaderView::Stretch);
    list.setMinimumHeight(fontMetrics().height() * 7);
    connect(&list, &QTreeWidget::itemSelectionChanged, this, &frmOverview::ShowTolerating);
}

void frmOverview::OfferTolerating(bool isOffered, const QString& whyNot) {
    offersTolerating_ = isOffered;
    whyNotTolerating_ = whyNot;
    for (OverviewPanel* panel : panels_) {
        panel->OfferTolerating(isOffered, whyNot);
    }
    ShowTolerating();
}

void frmOverview::ShowTolerating() {
    ui_->btnTolerate->setEnabled(offersTolerating_ && !ui_->lvwUnblocked->selectedItems().isEmpty());
    ui_->btnTolerate->setToolTip(offersTolerating_ ? toleratingTip_ : whyNotTolerating_);
}

void frmOverview::ShowBulkMode(bool isOn) {
    ui_->lblBulk->setVisible(isOn);
}

void frmOverview::ShowOverview(const Overview& overview) {
    for (const OverviewKind kind : overviewKinds) {
        panels_[static_cast<size_t>(kind)]->SetPicture(overview.Of(kind));
    }
    ratesByNumber_ = overview.ratesByNumber;
    setWindowTitle(CaptionOf(overview));
}

void frmOverview::ShowUnblocked(const std::vector<UnblockedSender>& senders) {
    if (senders == unblocked_) {
        return;
    }
    unblocked_ = senders;
    const int scrolled = ui_->lvwUnblocked->verticalScrollBar()->value();
    {
        const QSignalBlocker quiet(ui_->lvwUnblocked); // so that the button keeps the focus
        ListUnblocked();
    }
    ui_->lvwUnblocked->verticalScrollBar()->setValue(scrolled);
    ShowTolerating();
}

/// Who was selected or current stays so, where they are still there.
void frmOverview::ListUnblocked() {
    QTreeWidget& list = *ui_->lvwUnblocked;
    const QStringList selected = SelectedSenders();
    const QString current =
        list.currentItem() == nullptr ? QString() : list.currentItem()->data(UnblockedName, senderRole).toString();
    list.clear();
    for (const UnblockedSender& sender : unblocked_) {
        QTreeWidgetItem* item = ItemOf(sender);
        list.addTopLevelItem(item);
        item->setSelected(selected.contains(sender.sender));
        if (sender.sender == current) {
            list.setCurrentItem(item, UnblockedName, QItemSelectionModel::NoUpdate);
        }
    }
}

QStringList frmOverview::SelectedSenders() const {
    QStringList senders;
    for (const QTreeWidgetItem* item : ui_->lvwUnblocked->selectedItems()) {
        senders.append(item->data(UnblockedName, senderRole).toString());
    }
    return senders;
}

void frmOverview::Tell(const QString& text) {
    ui_->lblTold->setText(text);
}

void frmOverview::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous()) {
        Q_EMIT Opened();
    }
}

void frmOverview::hideEvent(QHideEvent* event) {
    QDialog::hideEvent(event);
    if (!event->spontaneous()) {
        Q_EMIT Closed();
    }
}

} // namespace quellbox
