#include "app/OverviewPanel.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMimeData>
#include <QShortcut>

namespace quellbox {

namespace {

constexpr std::array<const char*, overviewKinds.size()> namesOfKinds{"Days", "Levels", "Senders", "Recipients",
                                                                     "Subjects"};

QString NameWith(const char* prefix, OverviewKind kind, const char* suffix = "") {
    return QLatin1String(prefix) + QLatin1String(namesOfKinds[static_cast<size_t>(kind)]) + QLatin1String(suffix);
}

} // namespace

OverviewPanel::OverviewPanel(OverviewKind kind, QWidget* parent)
    : QFrame(parent), kind_(kind), lblTitle_(new QLabel(this)), btnTable_(new QToolButton(this)),
      btnSave_(new QToolButton(this)), stack_(new QStackedWidget(this)), chart_(new BarChart), view_(new QTableView) {
    setFrameShape(StyledPanel);
    stack_->addWidget(chart_);
    stack_->addWidget(view_);
    MakeHead();
    MakeTable();
    AddActions();
    chart_->setObjectName(NameWith("cht", kind_));
    chart_->setAccessibleName(TitleOf(kind_));
    connect(chart_, &BarChart::Chosen, this, &OverviewPanel::Chosen);
    setTabOrder(chart_, view_);
    setTabOrder(view_, btnTable_);
    setTabOrder(btnTable_, btnSave_);
    OverviewPicture nothing;
    nothing.kind = kind_;
    SetPicture(nothing);
}

void OverviewPanel::MakeHead() {
    auto* whole = new QVBoxLayout(this);
    auto* head = new QHBoxLayout;
    whole->addLayout(head);
    whole->addWidget(stack_, 1);
    head->addWidget(lblTitle_, 1);
    head->addWidget(btnTable_);
    head->addWidget(btnSave_);
    lblTitle_->setTextFormat(Qt::PlainText);
    lblTitle_->setWordWrap(true); // a long title does not widen the window
    btnTable_->setObjectName(NameWith("btn", kind_, "Table"));
    btnTable_->setText(tr("Table"));
    btnTable_->setCheckable(true);
    btnTable_->setAutoRaise(true);
    btnTable_->setFocusPolicy(Qt::StrongFocus);
    btnTable_->setAccessibleName(tr("%1 as a table").arg(TitleOf(kind_)));
    btnSave_->setObjectName(NameWith("btn", kind_, "Save"));
    btnSave_->setText(tr("Save..."));
    btnSave_->setAutoRaise(true);
    btnSave_->setFocusPolicy(Qt::StrongFocus);
    btnSave_->setAccessibleName(tr("Save %1").arg(TitleOf(kind_)));
    btnSave_->setToolTip(tr("Save the picture as PNG or SVG, or its table as CSV"));
    connect(btnTable_, &QToolButton::toggled, this, &OverviewPanel::ShowTable);
    connect(btnSave_, &QToolButton::clicked, this, [this] { Q_EMIT SaveClick(kind_); });
}

void OverviewPanel::MakeTable() {
    view_->setObjectName(NameWith("tbl", kind_));
    view_->setAccessibleName(TitleOf(kind_));
    view_->setModel(&table_);
    view_->setSelectionBehavior(QAbstractItemView::SelectRows);
    view_->setSelectionMode(QAbstractItemView::SingleSelection);
    view_->setTabKeyNavigation(false);
    view_->setWordWrap(false);
    view_->setContextMenuPolicy(Qt::ActionsContextMenu);
    view_->verticalHeader()->hide();
    view_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    view_->horizontalHeader()->setHighlightSections(false);
    connect(view_, &QTableView::doubleClicked, this,
            [this] { ChooseRow(QApplication::keyboardModifiers() & Qt::ControlModifier); });
}

QAction* OverviewPanel::AddAction(const char* name, const QString& text) {
    auto* action = new QAction(text, this);
    action->setObjectName(NameWith(name, kind_));
    action->setShortcutContext(Qt::WidgetShortcut);
    chart_->addAction(action);
    view_->addAction(action);
    return action;
}

// The keys of the chart are its own; only a table needs an action for them.
void OverviewPanel::AddActions() {
    connect(AddAction("actSelect", tr("Select Messages")), &QAction::triggered, this, [this] { ChooseCurrent(false); });
    connect(AddAction("actAdd", tr("Add to Selection")), &QAction::triggered, this, [this] { ChooseCurrent(true); });
    QAction* copy = AddAction("actCopy", tr("Copy Table"));
    copy->setShortcut(QKeySequence::Copy);
    connect(copy, &QAction::triggered, this, &OverviewPanel::Copy);
    connect(AddAction("actSave", tr("Save...")), &QAction::triggered, this, [this] { Q_EMIT SaveClick(kind_); });
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        connect(new QShortcut(QKeySequence(key), view_, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated,
                this, [this] { ChooseRow(false); });
        connect(new QShortcut(QKeySequence(int{Qt::CTRL} | key), view_, nullptr, nullptr, Qt::WidgetShortcut),
                &QShortcut::activated, this, [this] { ChooseRow(true); });
    }
}

void OverviewPanel::SetPicture(const OverviewPicture& picture) {
    if (picture != table_.Picture() || picture.bars.empty()) {
        const int row = view_->currentIndex().row();
        chart_->SetPicture(picture);
        table_.SetPicture(picture);
        view_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
        view_->setCurrentIndex(table_.index(std::min(std::max(row, 0), table_.rowCount() - 1), 0));
    }
    btnSave_->setEnabled(!picture.bars.empty());
    ShowTitle();
}

void OverviewPanel::ShowTitle() {
    const OverviewPicture& picture = table_.Picture();
    const auto shown = static_cast<qsizetype>(picture.bars.size());
    lblTitle_->setText(
        picture.leftOut == 0
            ? TitleOf(kind_)
            : tr("%1 (%2 of %3)").arg(TitleOf(kind_)).arg(shown).arg(shown + static_cast<qsizetype>(picture.leftOut)));
}

void OverviewPanel::ShowTable(bool isTable) {
    const bool hadFocus = stack_->currentWidget()->hasFocus();
    stack_->setCurrentIndex(isTable ? 1 : 0);
    if (hadFocus) {
        stack_->currentWidget()->setFocus();
    }
}

void OverviewPanel::ChooseRow(bool adds) {
    chart_->Choose(table_.PlaceOf(view_->currentIndex().row()), adds);
}

void OverviewPanel::ChooseCurrent(bool adds) {
    if (btnTable_->isChecked()) {
        ChooseRow(adds);
    } else {
        chart_->Choose(chart_->Current(), adds);
    }
}

void OverviewPanel::Copy() {
    auto* copied = new QMimeData;
    copied->setText(TabbedText(table_));
    copied->setData(QStringLiteral("text/csv"), TableBytes(CsvText(table_)));
    QApplication::clipboard()->setMimeData(copied);
}

} // namespace quellbox
