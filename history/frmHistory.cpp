#include "history/frmHistory.h"

#include "ui_frmHistory.h"

#include <QAbstractItemView>
#include <QHeaderView>
#include <QScreen>

#include <algorithm>

namespace quellbox {

namespace {

// Of a longer selection the first ones say whether anything can be taken back.
constexpr int mostLookedAt = 200;

template <class Value>
void AddChoices(QComboBox& box, const QString& all, const std::vector<Value>& values) {
    box.view()->setAccessibleName(all);
    box.addItem(all);
    for (const Value value : values) {
        box.addItem(NameOf(value), static_cast<int>(value));
    }
}

template <class Value>
std::optional<Value> Chosen(const QComboBox& box) {
    const QVariant value = box.currentData();
    return value.isValid() ? std::optional(static_cast<Value>(value.toInt())) : std::nullopt;
}

} // namespace

frmHistory::frmHistory(Journal& journal, QWidget* parent) : QDialog(parent), ui_(new Ui::frmHistory), model_(journal) {
    ui_->setupUi(this);
    resize(size().boundedTo(screen()->availableSize() * 9 / 10)); // also where everything is twice as large
    FillChoices();
    PrepareList();
    ConnectControls();
    ShowSelection();
    model_.SetFilter({});
}

frmHistory::~frmHistory() = default;

void frmHistory::FillChoices() {
    AddChoices(*ui_->cboAction, tr("All actions"), HistoryActions());
    AddChoices(*ui_->cboResult, tr("All results"), HistoryResults());
}

void frmHistory::PrepareList() {
    QTreeView& list = *ui_->lvwHistory;
    list.setModel(&model_);
    list.header()->setStretchLastSection(false);
    list.header()->setSectionsMovable(false);
    list.header()->setSectionResizeMode(HistorySubjectText, QHeaderView::Stretch);
    ui_->splHistory->setStretchFactor(0, 3);
    ui_->splHistory->setStretchFactor(1, 1);
    SizeColumns();
}

// The lines come later, so their texts cannot say how wide a column has to be.
void frmHistory::SizeColumns() {
    const QFontMetrics metrics = fontMetrics();
    const int margin = metrics.horizontalAdvance(QStringLiteral("MM"));
    const auto width = [&](HistoryColumn column, const QString& sample) {
        const int wanted = std::max(metrics.horizontalAdvance(sample), metrics.horizontalAdvance(HeaderOf(column)));
        ui_->lvwHistory->setColumnWidth(column, wanted + margin);
    };
    QString longestAction;
    for (const HistoryAction action : HistoryActions()) {
        const QString name = NameOf(action);
        longestAction = name.size() > longestAction.size() ? name : longestAction;
    }
    const QString address = QStringLiteral("someone@example.com");
    width(HistoryTime, QStringLiteral("2026-12-28 20:40:48"));
    width(HistoryActionName, longestAction);
    width(HistorySender, address);
    width(HistoryTo, address);
    width(HistoryScl, QStringLiteral("9 99.99"));
    width(HistoryResultName, NameOf(HistoryResult::Undone));
}

void frmHistory::ConnectControls() {
    connect(ui_->txtFind, &QLineEdit::textChanged, this, &frmHistory::Narrow);
    connect(ui_->cboAction, &QComboBox::currentIndexChanged, this, &frmHistory::Narrow);
    connect(ui_->cboResult, &QComboBox::currentIndexChanged, this, &frmHistory::Narrow);
    connect(&model_, &HistoryModel::Found, this, &frmHistory::ShowFound);
    connect(&model_, &HistoryModel::Fetched, this, &frmHistory::ShowSelection);
    connect(ui_->lvwHistory->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmHistory::ShowSelection);
    connect(ui_->btnUndo, &QPushButton::clicked, this, &frmHistory::btnUndo_Click);
    connect(ui_->btnExport, &QPushButton::clicked, this, &frmHistory::btnExport_Click);
    connect(ui_->btnClose, &QPushButton::clicked, this, &frmHistory::close);
}

void frmHistory::SetUndoAllowed(bool isAllowed) {
    isUndoAllowed_ = isAllowed;
    ShowSelection();
}

void frmHistory::Narrow() {
    model_.SetFilter(
        {ui_->txtFind->text(), Chosen<HistoryAction>(*ui_->cboAction), Chosen<HistoryResult>(*ui_->cboResult)});
}

void frmHistory::ShowFound() {
    const int count = model_.rowCount();
    ui_->lblCount->setText(tr("%n entries", nullptr, count));
    ui_->btnExport->setEnabled(count > 0);
    if (count > 0 && !ui_->lvwHistory->currentIndex().isValid()) {
        ui_->lvwHistory->setCurrentIndex(model_.index(0, 0));
    }
    ShowSelection();
}

/// The rows that are selected, no more than so many, from the top.
QList<int> frmHistory::SelectedRows(int most) const {
    QItemSelection ranges = ui_->lvwHistory->selectionModel()->selection();
    std::sort(ranges.begin(), ranges.end(),
              [](const auto& left, const auto& right) { return left.top() < right.top(); });
    QList<int> rows;
    for (const QItemSelectionRange& range : ranges) {
        for (int row = range.top(); row <= range.bottom() && rows.size() < most; ++row) {
            rows.append(row);
        }
    }
    return rows;
}

/// What has not come yet may be one that can be taken back.
bool frmHistory::SelectionCanBeUndone() const {
    const QList<int> rows = SelectedRows(mostLookedAt);
    return std::any_of(rows.begin(), rows.end(), [this](int row) {
        const HistoryLine* line = model_.Line(row);
        return line == nullptr || CanBeUndone(*line);
    });
}

void frmHistory::ShowSelection() {
    ui_->btnUndo->setEnabled(isUndoAllowed_ && SelectionCanBeUndone());
    ShowDetails();
}

void frmHistory::ShowDetails() {
    const HistoryLine* line = model_.Line(ui_->lvwHistory->currentIndex().row());
    QString text;
    if (line != nullptr) {
        for (const auto& [name, value] : DetailsOf(*line, QLocale())) {
            text += tr("%1: %2").arg(name, value) + QLatin1Char('\n');
        }
    }
    if (text != ui_->txtDetails->toPlainText()) {
        ui_->txtDetails->setPlainText(text);
    }
}

void frmHistory::btnUndo_Click() {
    HistoryIds entries;
    for (const int row : SelectedRows(model_.rowCount())) {
        entries.push_back(model_.Id(row));
    }
    Q_EMIT UndoClick(entries);
}

void frmHistory::btnExport_Click() {
    Q_EMIT ExportClick(model_.Filter());
}

} // namespace quellbox
