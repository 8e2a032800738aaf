#include "contents/frmView.h"

#include "contents/WorkArea.h"
#include "mail/DisplayText.h"
#include "settings/frmPlacement.h"
#include "ui_frmView.h"

#include <QAction>
#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>

namespace quellbox {

frmView::frmView(SettingsStore& store)
    : QWidget(nullptr, Qt::Window), store_(store), ui_(new Ui::frmView), mnuReadable(new QAction(this)) {
    ui_->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false); // the main window may be hidden, but it is still there
    setWindowIcon(QIcon(QStringLiteral(":/icons/quellbox.svg")));
    QFont fixed = ui_->rtfRaw->font();
    fixed.setPointSizeF(8.5); // a form file holds whole points only
    fixed.setStyleHint(QFont::Monospace);
    ui_->rtfRaw->SetSourceFont(fixed);
    MakePages();
    MakeTabs();
    RestoreWindowPlacement(*this, store_);
}

frmView::~frmView() = default;

void frmView::MakePages() {
    pages_ = {Page{ui_->rtfRaw}, Page{ui_->rtfReadable}};
    ui_->rtfReadable->hide();
    for (const Page& page : pages_) {
        page.pane->installEventFilter(this);
        page.pane->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(page.pane, &QWidget::customContextMenuRequested, this,
                [this, pane = page.pane](QPoint place) { PopUpMenu(*pane, place); });
    }
}

void frmView::MakeTabs() {
    ui_->tabPages->addTab(tr("&Source"));
    ui_->tabPages->addTab(tr("&Readable text"));
    ui_->tabPages->hide();
    ui_->tabPages->installEventFilter(this);
    connect(ui_->tabPages, &QTabBar::currentChanged, this,
            [this](int tab) { TurnTo(tab == 0 ? TextForm::Source : TextForm::Readable); });
    mnuReadable->setText(tr("&Readable text"));
    mnuReadable->setObjectName(QStringLiteral("mnuReadable"));
    mnuReadable->setShortcut(QKeySequence(QStringLiteral("Ctrl+R")));
    mnuReadable->setCheckable(true);
    addAction(mnuReadable);
    connect(mnuReadable, &QAction::triggered, this, &frmView::TurnOver);
}

void frmView::TurnOver() {
    TurnTo(shown_ == TextForm::Source ? TextForm::Readable : TextForm::Source);
}

void frmView::TurnTo(TextForm form) {
    shown_ = form;
    ShowCurrent();
    Page& page = PageOf(form);
    if (!page.isWanted) {
        page.isWanted = true;
        Q_EMIT PageWanted(form);
    }
}

void frmView::ShowCurrent() {
    const bool isReadable = shown_ == TextForm::Readable;
    const bool hadFocus = !ui_->tabPages->hasFocus();
    ui_->rtfRaw->setVisible(!isReadable);
    ui_->rtfReadable->setVisible(isReadable);
    mnuReadable->setChecked(isReadable);
    ui_->tabPages->setCurrentIndex(isReadable ? 1 : 0);
    // Who has turned over once wants to turn back; who has never done so sees nothing but the source.
    ui_->tabPages->setVisible(isReadable || ui_->tabPages->isVisible());
    if (hadFocus) {
        PageOf(shown_).pane->setFocus();
    }
}

void frmView::ShowPage(TextForm form, const QString& text) {
    PageOf(form).pane->ShowFile(fileName_, text, form);
}

void frmView::ShowMessage(const QString& path, const QString& text, TextForm form) {
    fileName_ = path;
    for (Page& page : pages_) {
        page.isWanted = false;
        page.pane->clear();
    }
    PageOf(form).isWanted = true;
    ShowPage(form, text);
    TurnTo(form);
    setWindowTitle(WindowTitle(path));
    if (isMinimized()) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
    }
    show();
    raise();
    activateWindow();
    PageOf(shown_).pane->setFocus();
}

void frmView::closeEvent(QCloseEvent* event) {
    SaveWindowPlacement(*this, store_);
    QWidget::closeEvent(event);
}

void frmView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    KeepInside();
}

void frmView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    KeepInside();
}

void frmView::KeepInside() {
    if (!isVisible() || isMinimized() || isMaximized() || isFullScreen()) {
        return;
    }
    const QRect outer = frameGeometry();
    const QRect kept = KeepInWorkArea(outer, screen()->availableGeometry());
    if (kept != outer) {
        const QMargins frame(geometry().left() - outer.left(), geometry().top() - outer.top(),
                             outer.right() - geometry().right(), outer.bottom() - geometry().bottom());
        setGeometry(kept.marginsRemoved(frame));
    }
}

void frmView::PopUpMenu(RawPane& pane, QPoint place) {
    QMenu* menu = pane.createStandardContextMenu(place);
    menu->setObjectName(QStringLiteral("mnuText"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addSeparator();
    menu->addAction(mnuReadable);
    menu->popup(pane.viewport()->mapToGlobal(place));
}

bool frmView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && rtfRaw_KeyPress(*static_cast<QKeyEvent*>(event))) {
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool frmView::rtfRaw_KeyPress(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Escape:
        // The key that opened the viewer from the list may still be held down.
        if (!event.isAutoRepeat()) {
            close();
        }
        return true;
    default:
        return !event.text().isEmpty() && event.text().front().isPrint();
    }
}

} // namespace quellbox
