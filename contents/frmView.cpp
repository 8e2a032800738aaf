#include "contents/frmView.h"

#include "contents/WorkArea.h"
#include "mail/DisplayText.h"
#include "settings/frmPlacement.h"
#include "ui_frmView.h"

#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QScreen>

namespace quellbox {

frmView::frmView(SettingsStore& store) : QWidget(nullptr, Qt::Window), store_(store), ui_(new Ui::frmView) {
    ui_->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false); // the main window may be hidden, but it is still there
    setWindowIcon(QIcon(QStringLiteral(":/icons/quellbox.svg")));
    QFont fixed = ui_->rtfRaw->font();
    fixed.setPointSizeF(8.5); // a form file holds whole points only
    fixed.setStyleHint(QFont::Monospace);
    ui_->rtfRaw->setFont(fixed);
    ui_->rtfRaw->installEventFilter(this);
    RestoreWindowPlacement(*this, store_);
}

frmView::~frmView() = default;

void frmView::ShowMessage(const QString& path, const QString& text) {
    ui_->rtfRaw->ShowFile(path, text);
    setWindowTitle(WindowTitle(path));
    if (isMinimized()) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
    }
    show();
    raise();
    activateWindow();
    ui_->rtfRaw->setFocus();
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
