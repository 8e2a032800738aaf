#include "app/frmOverview.h"

#include "mail/DisplayText.h"
#include "ui_frmOverview.h"

#include <QDateTime>
#include <QHeaderView>
#include <QLocale>
#include <QShowEvent>

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

} // namespace

frmOverview::frmOverview(QWidget* parent) : QDialog(parent), ui_(new Ui::frmOverview) {
    ui_->setupUi(this);
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
    connect(&list, &QTreeWidget::itemSelectionChanged, this,
            [this] { ui_->btnTolerate->setEnabled(!ui_->lvwUnblocked->selectedItems().isEmpty()); });
}

void frmOverview::ShowOverview(const Overview& overview) {
    for (const OverviewKind kind : overviewKinds) {
        panels_[static_cast<size_t>(kind)]->SetPicture(overview.Of(kind));
    }
    const auto count = static_cast<int>(overview.count);
    setWindowTitle(count == 1 ? tr("Overview of one message") : tr("Overview of %n messages", nullptr, count));
}

void frmOverview::ShowUnblocked(const std::vector<UnblockedSender>& senders) {
    const QStringList selected = SelectedSenders();
    ui_->lvwUnblocked->clear();
    for (const UnblockedSender& sender : senders) {
        QTreeWidgetItem* item = ItemOf(sender);
        ui_->lvwUnblocked->addTopLevelItem(item);
        item->setSelected(selected.contains(sender.sender));
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
