#include "app/PanesLayout.h"

#include "app/ContentsPane.h"
#include "app/MainMenus.h"
#include "app/MessageListView.h"
#include "app/StatusBarView.h"
#include "settings/Placement.h"

#include <QVBoxLayout>

#include <algorithm>

namespace quellbox {

namespace {

constexpr int smallestPane = 60; // pixels; list, contents and raw text
constexpr int splitBarWidth = 5; // pixels

} // namespace

PanesLayout::PanesLayout(const WindowParts& parts)
    : parts_(parts), splWhole(new QSplitter(Qt::Vertical, &parts.window)),
      splBottom(new QSplitter(Qt::Horizontal, &parts.window)), fraList(new QWidget(&parts.window)),
      clbLeft(new QWidget(&parts.window)) {
    splWhole->setObjectName(QStringLiteral("splWhole"));
    splBottom->setObjectName(QStringLiteral("splBottom"));
    clbLeft->setObjectName(QStringLiteral("clbLeft"));
    MakeSplitters();
    PlaceWidgets();
    connect(splWhole, &QSplitter::splitterMoved, this, &PanesLayout::splWhole_Moved);
    connect(splBottom, &QSplitter::splitterMoved, this, &PanesLayout::splBottom_Moved);
}

void PanesLayout::MakeSplitters() {
    QWidget* const tree = &parts_.contents.Tree();
    QWidget* const raw = &parts_.contents.Raw();
    for (QWidget* pane : {tree, raw}) {
        pane->setMinimumWidth(smallestPane);
        splBottom->addWidget(pane);
    }
    splBottom->setCollapsible(1, false);
    splBottom->setMinimumHeight(smallestPane);
    parts_.list.setMinimumHeight(smallestPane);
    auto* above = new QVBoxLayout(fraList);
    above->setContentsMargins(0, 0, 0, 0);
    above->setSpacing(0);
    above->addWidget(&parts_.list, 1);
    splWhole->addWidget(fraList);
    splWhole->addWidget(splBottom);
    splWhole->setCollapsible(0, false);
    for (QSplitter* splitter : {splWhole, splBottom}) {
        splitter->setHandleWidth(splitBarWidth);
        splitter->setStretchFactor(0, 0);
        splitter->setStretchFactor(1, 1);
    }
    splWhole->handle(1)->setAccessibleName(tr("Divider between list and contents"));
    splBottom->handle(1)->setAccessibleName(tr("Divider between layout and raw contents"));
}

void PanesLayout::PlaceWidgets() {
    auto* bands = new QVBoxLayout(clbLeft);
    bands->setContentsMargins(0, 0, 0, 0);
    bands->addWidget(&parts_.menus.Messages());
    bands->addWidget(&parts_.menus.Contents());
    bands->addStretch();

    auto* inside = new QWidget(&parts_.window);
    auto* across = new QHBoxLayout(inside);
    across->setContentsMargins(0, 0, 0, 0);
    across->setSpacing(0);
    across->addWidget(clbLeft);
    across->addWidget(splWhole, 1);
    parts_.window.setCentralWidget(inside);
    parts_.window.setStatusBar(&parts_.statusBar);
}

void PanesLayout::AddAboveList(QWidget& widget) {
    static_cast<QVBoxLayout*>(fraList->layout())->insertWidget(0, &widget);
}

bool PanesLayout::IsOn(const char* name) const {
    return parts_.menus.Entry(name).isChecked();
}

void PanesLayout::Restore(const AppState& state) {
    listPaneSize_ = ToPixels(state.Whole);
    treePaneSize_ = ToPixels(state.Bottom);
    parts_.menus.Entry("mnuViewStatus").setChecked(state.StatusBar);
    parts_.menus.Entry("mnuViewToolbar").setChecked(state.Toolbar);
    parts_.menus.Entry("mnuViewContents").setChecked(state.Contents);
    parts_.menus.Entry("mnuViewFormat").setChecked(true);
    LayOut();
    DividePanes();
}

// While a pane is hidden its splitter tells nothing; what showing it would restore is kept instead.
void PanesLayout::Save(AppState& state) const {
    const bool contents = IsOn("mnuViewContents");
    const bool tree = contents && IsOn("mnuViewFormat");
    state.StatusBar = IsOn("mnuViewStatus");
    state.Toolbar = IsOn("mnuViewToolbar");
    state.Contents = contents;
    state.Whole = ToTwips(contents ? splWhole->sizes().value(0) : listPaneSize_);
    state.Bottom = ToTwips(tree ? splBottom->sizes().value(0) : treePaneSize_);
}

void PanesLayout::LayOut() {
    clbLeft->setVisible(IsOn("mnuViewToolbar"));
    parts_.statusBar.setVisible(IsOn("mnuViewStatus"));
    ShowContentsBand();
    parts_.window.layout()->activate();
    parts_.window.centralWidget()->layout()->activate();
    fraList->layout()->activate();
    parts_.list.FitColumns();
}

void PanesLayout::DividePanes() {
    const bool contents = IsOn("mnuViewContents");
    const bool layout = IsOn("mnuViewFormat");
    const int height = std::max(splWhole->height(), 2 * smallestPane);
    const int list = contents ? std::min(listPaneSize_, height - smallestPane) : height;
    splBottom->setMinimumHeight(contents ? smallestPane : 0);
    splWhole->setSizes({list, height - list});
    const int width = std::max(splBottom->width(), 2 * smallestPane);
    const int tree = layout ? treePaneSize_ : 0;
    parts_.contents.Tree().setMinimumWidth(layout ? smallestPane : 0);
    splBottom->setSizes({tree, std::max(width - tree, 0)});
    LetPanesHaveFocus();
}

// A pane of no size must not get the focus: nobody would see where the keys go.
void PanesLayout::LetPanesHaveFocus() {
    const bool contents = IsOn("mnuViewContents");
    parts_.contents.Raw().setFocusPolicy(contents ? Qt::StrongFocus : Qt::NoFocus);
    parts_.contents.Tree().setFocusPolicy(contents && IsOn("mnuViewFormat") ? Qt::StrongFocus : Qt::NoFocus);
    const QWidget* focus = parts_.window.focusWidget();
    if (focus != nullptr && focus->focusPolicy() == Qt::NoFocus) {
        parts_.list.setFocus();
    }
}

void PanesLayout::ShowContentsBand() {
    parts_.menus.Contents().setVisible(IsOn("mnuViewContents") && IsOn("mnuViewFormat"));
}

void PanesLayout::mnuView_Click() {
    parts_.menus.Entry("mnuViewFormat").setEnabled(IsOn("mnuViewContents"));
}

void PanesLayout::mnuViewContents_Click() {
    if (!IsOn("mnuViewContents")) {
        listPaneSize_ = splWhole->sizes().value(0);
        if (IsOn("mnuViewFormat")) {
            treePaneSize_ = splBottom->sizes().value(0);
        }
    }
    LayOut();
    DividePanes();
}

void PanesLayout::mnuViewFormat_Click() {
    if (!IsOn("mnuViewFormat")) {
        treePaneSize_ = splBottom->sizes().value(0);
    }
    if (IsOn("mnuViewContents")) {
        listPaneSize_ = splWhole->sizes().value(0);
    }
    LayOut();
    DividePanes();
}

void PanesLayout::mnuViewToolbar_Click() {
    LayOut();
}

void PanesLayout::mnuViewStatus_Click() {
    LayOut();
}

void PanesLayout::splBottom_Moved() {
    const int tree = splBottom->sizes().value(0);
    parts_.menus.Entry("mnuViewFormat").setChecked(tree > splitBarWidth);
    parts_.menus.Entry("mnuViewContents").setChecked(splWhole->sizes().value(1) > splitBarWidth);
    if (IsOn("mnuViewFormat")) {
        treePaneSize_ = tree;
        parts_.contents.Tree().setMinimumWidth(smallestPane);
    }
    ShowContentsBand();
    LetPanesHaveFocus();
}

void PanesLayout::splWhole_Moved() {
    parts_.menus.Entry("mnuViewContents").setChecked(splWhole->sizes().value(1) > splitBarWidth);
    if (IsOn("mnuViewContents")) {
        listPaneSize_ = splWhole->sizes().value(0);
        splBottom->setMinimumHeight(smallestPane);
    }
    ShowContentsBand();
    LetPanesHaveFocus();
}

} // namespace quellbox
