#include "app/frmMain.h"

#include "app/HelpDesk.h"
#include "app/MessageListView.h"
#include "app/StatusBarView.h"
#include "app/TrayPresence.h"
#include "settings/Placement.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMenuBar>
#include <QVBoxLayout>

#include <algorithm>

namespace quellbox {

namespace {

constexpr int smallestPane = 60; // pixels; list, contents and raw text
constexpr int splitBarWidth = 5; // pixels

} // namespace

void frmMain::CreatePanes() {
    lvwMessages = new MessageListView(this);
    lvwMessages->setObjectName(QStringLiteral("lvwMessages"));
    lvwMessages->setAccessibleName(tr("Messages"));
    lvwMessages->setModel(&model_);
    lvwMessages->setMinimumHeight(smallestPane);

    contents_->Tree().setMinimumWidth(smallestPane);
    contents_->Raw().setMinimumWidth(smallestPane);
    splBottom = new QSplitter(Qt::Horizontal, this);
    splBottom->setObjectName(QStringLiteral("splBottom"));
    splBottom->addWidget(&contents_->Tree());
    splBottom->addWidget(&contents_->Raw());
    splBottom->setCollapsible(1, false);
    splBottom->setMinimumHeight(smallestPane);

    splWhole = new QSplitter(Qt::Vertical, this);
    splWhole->setObjectName(QStringLiteral("splWhole"));
    splWhole->addWidget(lvwMessages);
    splWhole->addWidget(splBottom);
    splWhole->setCollapsible(0, false);
    for (QSplitter* splitter : {splWhole, splBottom}) {
        splitter->setHandleWidth(splitBarWidth);
        splitter->setStretchFactor(0, 0);
        splitter->setStretchFactor(1, 1);
    }
    splWhole->handle(1)->setAccessibleName(tr("Divider between list and contents"));
    splBottom->handle(1)->setAccessibleName(tr("Divider between layout and raw contents"));

    clbLeft = new QWidget(this);
    clbLeft->setObjectName(QStringLiteral("clbLeft"));
    auto* bands = new QVBoxLayout(clbLeft);
    bands->setContentsMargins(0, 0, 0, 0);
    bands->addWidget(tlbMessages);
    bands->addWidget(tlbContents);
    bands->addStretch();

    auto* inside = new QWidget(this);
    auto* across = new QHBoxLayout(inside);
    across->setContentsMargins(0, 0, 0, 0);
    across->setSpacing(0);
    across->addWidget(clbLeft);
    across->addWidget(splWhole, 1);
    setCentralWidget(inside);

    stbBottom = new StatusBarView(panels_, this);
    setStatusBar(stbBottom);
    connect(stbBottom, &StatusBarView::PanelClick, this,
            [this](const QString& key) { Guarded([this, key] { stbBottom_PanelClick(key); }); });

    listPaneSize_ = ToPixels(state_.Whole);
    treePaneSize_ = ToPixels(state_.Bottom);
    connect(splWhole, &QSplitter::splitterMoved, this, &frmMain::splWhole_Moved);
    connect(splBottom, &QSplitter::splitterMoved, this, &frmMain::splBottom_Moved);
}

void frmMain::LayOut() {
    clbLeft->setVisible(mnuViewToolbar->isChecked());
    stbBottom->setVisible(mnuViewStatus->isChecked());
    ShowContentsBand();
    layout()->activate();
    centralWidget()->layout()->activate();
    lvwMessages->FitColumns();
}

void frmMain::DividePanes() {
    const int height = std::max(splWhole->height(), 2 * smallestPane);
    const int list = mnuViewContents->isChecked() ? std::min(listPaneSize_, height - smallestPane) : height;
    splBottom->setMinimumHeight(mnuViewContents->isChecked() ? smallestPane : 0);
    splWhole->setSizes({list, height - list});
    const int width = std::max(splBottom->width(), 2 * smallestPane);
    const int tree = mnuViewFormat->isChecked() ? treePaneSize_ : 0;
    contents_->Tree().setMinimumWidth(mnuViewFormat->isChecked() ? smallestPane : 0);
    splBottom->setSizes({tree, std::max(width - tree, 0)});
    LetPanesHaveFocus();
}

// A pane of no size must not get the focus: nobody would see where the keys go.
void frmMain::LetPanesHaveFocus() {
    const bool contents = mnuViewContents->isChecked();
    contents_->Raw().setFocusPolicy(contents ? Qt::StrongFocus : Qt::NoFocus);
    contents_->Tree().setFocusPolicy(contents && mnuViewFormat->isChecked() ? Qt::StrongFocus : Qt::NoFocus);
    const QWidget* focus = focusWidget();
    if (focus != nullptr && focus->focusPolicy() == Qt::NoFocus) {
        lvwMessages->setFocus();
    }
}

void frmMain::ShowContentsBand() {
    tlbContents->setVisible(mnuViewContents->isChecked() && mnuViewFormat->isChecked());
}

void frmMain::mnuView_Click() {
    mnuViewFormat->setEnabled(mnuViewContents->isChecked());
    tray_->ExplainHiding();
}

void frmMain::mnuViewContents_Click() {
    if (!mnuViewContents->isChecked()) {
        listPaneSize_ = splWhole->sizes().value(0);
        if (mnuViewFormat->isChecked()) {
            treePaneSize_ = splBottom->sizes().value(0);
        }
    }
    LayOut();
    DividePanes();
    const int row = SelectedRow();
    if (mnuViewContents->isChecked() && row >= 0) {
        lvwMessages->scrollTo(model_.index(row, 0));
        // As after a plain click, whatever the last real one was.
        LoadOnItemClick = true;
        LastMouseButton = Qt::NoButton;
        lvwMessages_ItemClick(row);
    }
}

void frmMain::mnuViewFormat_Click() {
    if (!mnuViewFormat->isChecked()) {
        treePaneSize_ = splBottom->sizes().value(0);
    }
    listPaneSize_ = mnuViewContents->isChecked() ? splWhole->sizes().value(0) : listPaneSize_;
    LayOut();
    DividePanes();
}

void frmMain::mnuViewToolbar_Click() {
    LayOut();
}

void frmMain::mnuViewStatus_Click() {
    LayOut();
}

void frmMain::splBottom_Moved() {
    const int tree = splBottom->sizes().value(0);
    mnuViewFormat->setChecked(tree > splitBarWidth);
    mnuViewContents->setChecked(splWhole->sizes().value(1) > splitBarWidth);
    if (mnuViewFormat->isChecked()) {
        treePaneSize_ = tree;
        contents_->Tree().setMinimumWidth(smallestPane);
    }
    ShowContentsBand();
    LetPanesHaveFocus();
}

void frmMain::splWhole_Moved() {
    mnuViewContents->setChecked(splWhole->sizes().value(1) > splitBarWidth);
    if (mnuViewContents->isChecked()) {
        listPaneSize_ = splWhole->sizes().value(0);
        splBottom->setMinimumHeight(smallestPane);
    }
    ShowContentsBand();
    LetPanesHaveFocus();
}

// Before the window is shown its panes have no sizes that could be divided.
void frmMain::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (!event->spontaneous()) {
        LayOut();
        DividePanes();
    }
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (isMinimized()) {
        return;
    }
    LayOut();
}

void frmMain::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::FontChange && lvwMessages != nullptr) {
        lvwMessages->FitColumns();
    }
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    const bool isKey = type == QEvent::KeyPress || type == QEvent::ShortcutOverride;
    const bool isShowing = type == QEvent::Show || type == QEvent::Hide;
    auto* widget = isKey || isShowing ? qobject_cast<QWidget*>(watched) : nullptr;
    if (widget != nullptr && isShowing && widget->isWindow() && widget != this) {
        FormShownOrHidden(widget);
    }
    if (widget != nullptr && isKey && WindowKeyDown(*widget, event)) {
        return true;
    }
    if (HoldsBack(watched, *event)) {
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

// While a job works on the list, no key and no click changes the list or its selection. They are dropped, not kept: a
// key that repeats must not delete the next message.
bool frmMain::HoldsBack(const QObject* watched, const QEvent& event) const {
    if (!jobs_.IsAtWork() || jobs_.GivesWay()) {
        return false;
    }
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::ContextMenu:
        return watched == lvwMessages || watched == lvwMessages->viewport() ||
               watched == lvwMessages->header()->viewport();
    default:
        return false;
    }
}

// What the other windows of the program need of this one, so that they need not know it.
void frmMain::FormShownOrHidden(const QWidget* form) {
    if (form->isVisible()) {
        help_->ConnectHelpButton(form);
    }
    tray_->OfferMenu();
    // What is modal is known only when the window has come or gone.
    QTimer::singleShot(0, this, [this] {
        help_->KeepUsableBesideDialogs();
        tray_->KeepUsableBesideDialogs();
    });
}

bool frmMain::WindowKeyDown(QWidget& widget, QEvent* event) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (event->type() == QEvent::KeyPress && key->key() == Qt::Key_F1 && key->modifiers() == Qt::NoModifier) {
        return help_->HelpKeyDown(&widget);
    }
    if (widget.window() != this) {
        return false;
    }
    // A text box would take Ctrl+A or Ctrl+C for itself; in this window the menus own their shortcuts. A key that is a
    // shortcut shows itself here only.
    if (event->type() == QEvent::ShortcutOverride) {
        timer_.PutOff();
        event->ignore();
        return true;
    }
    // An Escape that leaves the menus is meant for nothing else.
    if (qobject_cast<const QMenuBar*>(&widget) != nullptr) {
        return false;
    }
    // What the focused control leaves alone passes here again on its way up.
    const bool isHeld = key->key() == Qt::Key_Escape && key->isAutoRepeat();
    if (!isHeld && (widget.hasFocus() || (&widget == this && focusWidget() == nullptr))) {
        FormKeyDown(key->key());
    }
    return false;
}

// The window sees keys before its controls do. The split bars never get the focus, so no key can move them.
void frmMain::FormKeyDown(int key) {
    timer_.PutOff();
    if (key == Qt::Key_Escape && jobs_.IsAtWork() && !jobs_.GivesWay()) {
        jobs_.Stop();
    } else if (key == Qt::Key_Escape) {
        MayChange();
        state_.FindText.clear();
        Guarded([this] { ClearSelection(); });
        contents_->CloseViewer();
    }
}

} // namespace quellbox
