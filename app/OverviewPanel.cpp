#include "app/OverviewPanel.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QMimeData>
#include <QShortcut>

#include <algorithm>

namespace quellbox {

namespace {

constexpr std::array<const char*, overviewKinds.size()> namesOfKinds{"Days", "Levels", "Senders", "Recipients",
                                                                     "Subjects"};

QString NameWith(const char* prefix, OverviewKind kind, const char* suffix = "") {
    return QLatin1String(prefix) + QLatin1String(namesOfKinds[static_cast<size_t>(kind)]) + QLatin1String(suffix);
}

/// Of so many bars from that one those that are of messages: days without stand between others as gaps.
qint64 GroupsIn(const OverviewPicture& picture, int first, size_t count) {
    const auto begin = picture.bars.begin() + first;
    return std::count_if(begin, begin + static_cast<std::ptrdiff_t>(count),
                         [](const OverviewBar& bar) { return bar.Count() > 0; });
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
    connect(chart_, &BarChart::MenuWanted, this, &OverviewPanel::PopUpMenu);
    connect(chart_, &BarChart::LaidOut, this, &OverviewPanel::ShowTitle);
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
    lblTitle_->setObjectName(NameWith("lbl", kind_));
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
    tolerate_ = AddAction("actTolerate", tr("Tolerate Senders..."));
    connect(tolerate_, &QAction::triggered, this, &OverviewPanel::TolerateCurrent);
    QAction* copy = AddAction("actCopy", tr("Copy Table"));
    copy->setShortcut(QKeySequence::Copy);
    connect(copy, &QAction::triggered, this, &OverviewPanel::Copy);
    QAction* save = AddAction("actSave", tr("Save..."));
    connect(save, &QAction::triggered, this, [this] { Q_EMIT SaveClick(kind_); });
    wholeActions_ = {copy, save};
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        connect(new QShortcut(QKeySequence(key), view_, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated,
                this, [this] { ChooseRow(false); });
        connect(new QShortcut(QKeySequence(int{Qt::CTRL} | key), view_, nullptr, nullptr, Qt::WidgetShortcut),
                &QShortcut::activated, this, [this] { ChooseRow(true); });
    }
}

void OverviewPanel::SetPicture(const OverviewPicture& picture) {
    if (picture != table_.Picture() || picture.bars.empty()) {
        const OverviewPlace place = table_.PlaceOf(view_->currentIndex().row());
        const MessageGroup group = place.bar < 0 ? MessageGroup() : GroupAt(table_.Picture(), place);
        chart_->SetPicture(picture);
        table_.SetPicture(picture);
        view_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
        const OverviewPlace now = place.bar < 0 ? OverviewPlace() : PlaceWith(picture, group);
        view_->setCurrentIndex(now.bar < 0 ? QModelIndex() : table_.index(table_.RowOf(now), 0));
    }
    btnSave_->setEnabled(!picture.bars.empty());
    ShowTitle();
}

/// How many groups have a bar in the chart, which has not room for all, or a row in the table.
qint64 OverviewPanel::GroupsShown() const {
    const BarPicture& shown = chart_->Shown();
    return btnTable_->isChecked() ? GroupsIn(table_.Picture(), 0, table_.Picture().bars.size())
                                  : GroupsIn(chart_->Picture(), shown.firstBar, static_cast<size_t>(shown.barCount));
}

void OverviewPanel::ShowTitle() {
    const OverviewPicture& picture = chart_->Picture();
    const qint64 shown = GroupsShown();
    const qint64 all = GroupsIn(picture, 0, picture.bars.size()) + static_cast<qint64>(picture.leftOut);
    lblTitle_->setText(shown == all ? TitleOf(kind_) : tr("%1 (%2 of %3)").arg(TitleOf(kind_)).arg(shown).arg(all));
}

void OverviewPanel::OfferTolerating(bool isOffered, const QString& whyNot) {
    tolerate_->setEnabled(isOffered);
    tolerate_->setToolTip(isOffered ? QString() : whyNot);
}

void OverviewPanel::ShowTable(bool isTable) {
    const bool hadFocus = stack_->currentWidget()->hasFocus();
    stack_->setCurrentIndex(isTable ? 1 : 0);
    if (hadFocus) {
        stack_->currentWidget()->setFocus();
    }
    ShowTitle();
}

void OverviewPanel::ChooseRow(bool adds) {
    chart_->Choose(table_.PlaceOf(view_->currentIndex().row()), adds);
}

OverviewPlace OverviewPanel::Current() const {
    return btnTable_->isChecked() ? table_.PlaceOf(view_->currentIndex().row()) : chart_->Current();
}

void OverviewPanel::ChooseCurrent(bool adds) {
    chart_->Choose(Current(), adds);
}

void OverviewPanel::TolerateCurrent() {
    const OverviewPlace place = Current();
    if (place.bar >= 0) {
        const MessageGroup group = GroupAt(table_.Picture(), place); // the answer may change the picture
        Q_EMIT TolerateClick(group);
    }
}

void OverviewPanel::PopUpMenu(bool isOnBar, const QPoint& screen) {
    auto* menu = new QMenu(this);
    menu->setObjectName(NameWith("mnu", kind_));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    menu->addActions(isOnBar ? chart_->actions() : wholeActions_);
    menu->popup(screen);
}

void OverviewPanel::Copy() {
    auto* copied = new QMimeData;
    copied->setText(TabbedText(table_));
    copied->setData(QStringLiteral("text/csv"), TableBytes(CsvText(table_)));
    QApplication::clipboard()->setMimeData(copied);
}

} // namespace quellbox
