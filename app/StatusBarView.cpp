#include "app/StatusBarView.h"

#include "app/PlainToolTip.h"
#include "settings/Placement.h"

#include <QIcon>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace quellbox {

namespace {

constexpr int infoWidth = 11906;  // twips
constexpr int narrowWidth = 2540; // twips
constexpr int panelMargin = 4;    // pixels

} // namespace

StatusPanelView::StatusPanelView(const QString& key, const QString& subject, QWidget* parent)
    : QLabel(parent), subject_(subject) {
    setObjectName(QStringLiteral("stbBottom_") + key);
    setProperty("key", key);
    setTextFormat(Qt::PlainText);
    setFrameShape(QFrame::NoFrame);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    setContentsMargins(panelMargin, 1, panelMargin, 1);
}

void StatusPanelView::Show(const StatusPanel& panel) {
    setText(panel.text);
    setAccessibleName(panel.text.isEmpty() ? subject_ : tr("%1: %2").arg(subject_, panel.text));
    setToolTip(PlainToolTip(panel.toolTip));
}

void StatusPanelView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(contentsRect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, shown);
}

void StatusPanelView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
        Q_EMIT Clicked();
    }
}

StatusBarView::StatusBarView(StatusPanels& panels, QWidget* parent)
    : QStatusBar(parent), panels_(panels), info_(new StatusPanelView(QStringLiteral("info"), tr("State"), this)),
      size_(new StatusPanelView(QStringLiteral("size"), tr("Size or time"), this)),
      count_(new StatusPanelView(QStringLiteral("count"), tr("Number of messages"), this)),
      prbFiles(new QProgressBar(this)), btnStop(new QToolButton(this)), btnFailures(new QToolButton(this)) {
    setObjectName(QStringLiteral("stbBottom"));
    setSizeGripEnabled(true);
    prbFiles->setObjectName(QStringLiteral("prbFiles"));
    prbFiles->setAccessibleName(tr("Progress"));
    prbFiles->setTextVisible(false);
    prbFiles->hide();
    MakeButtons();
    const int sampleWidth = fontMetrics().horizontalAdvance(QStringLiteral("00 messages (just today)XX"));
    info_->setMinimumWidth(ToPixels(narrowWidth));
    for (StatusPanelView* panel : {size_, count_}) {
        panel->setMinimumWidth(std::max(ToPixels(narrowWidth), sampleWidth));
    }
    addWidget(info_, ToPixels(infoWidth));
    addWidget(size_, ToPixels(narrowWidth));
    addWidget(count_, ToPixels(narrowWidth));
    for (StatusPanelView* panel : {info_, size_, count_}) {
        connect(panel, &StatusPanelView::Clicked, this,
                [this, panel] { Q_EMIT PanelClick(panel->property("key").toString()); });
    }
    ShowStop(false);
    panels_.SetSize({}, tr("Last screen update"));
    connect(&panels_, &StatusPanels::Changed, this, &StatusBarView::ShowLater);
    ShowNow();
}

void StatusBarView::MakeButtons() {
    btnStop->setObjectName(QStringLiteral("btnStop"));
    btnStop->setText(tr("Stop"));
    btnStop->setToolTip(tr("Leave alone what has not begun yet (Esc)"));
    btnStop->setFocusPolicy(Qt::NoFocus);
    btnStop->hide();
    connect(btnStop, &QToolButton::clicked, this, &StatusBarView::StopClick);
    btnFailures->setObjectName(QStringLiteral("btnFailures"));
    btnFailures->setIcon(QIcon(QStringLiteral(":/icons/warning.svg")));
    btnFailures->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    btnFailures->setToolTip(tr("Messages that could not be dealt with, and why (F8)"));
    btnFailures->setFocusPolicy(Qt::TabFocus);
    btnFailures->setAutoRaise(true);
    btnFailures->hide();
    btnFailures->setAccessibleName(tr("Messages that could not be dealt with"));
    connect(btnFailures, &QToolButton::clicked, this, &StatusBarView::FailuresClick);
}

// The text of the first panel makes room for the mark. The panels keep their widths, and so does the window.
void StatusBarView::ShowFailures(int count) {
    btnFailures->setText(tr("%n failed", nullptr, count));
    btnFailures->setAccessibleName(tr("%1: messages that could not be dealt with").arg(btnFailures->text()));
    btnFailures->setShortcut(QKeySequence(Qt::Key_F8)); // which a new text takes away
    btnFailures->setVisible(count > 0);
    btnFailures->raise();
    PlaceProgress();
}

void StatusBarView::ShowFileProgress(bool show, int maximum) {
    if (!show || maximum < 1) {
        prbFiles->hide();
        return;
    }
    prbFiles->setRange(0, maximum);
    prbFiles->setValue(0);
    PlaceProgress();
    prbFiles->show();
    prbFiles->raise();
}

void StatusBarView::resizeEvent(QResizeEvent* event) {
    QStatusBar::resizeEvent(event);
    PlaceProgress();
}

// A pass writes to the panels thousands of times; they are painted once per turn of the event loop.
void StatusBarView::ShowLater() {
    if (showIsDue_) {
        return;
    }
    showIsDue_ = true;
    QMetaObject::invokeMethod(this, &StatusBarView::ShowNow, Qt::QueuedConnection);
}

void StatusBarView::ShowStop(bool show) {
    for (StatusPanelView* panel : {size_, count_}) {
        panel->setCursor(show ? Qt::ArrowCursor : Qt::PointingHandCursor); // a click on these leads to the options
    }
    btnStop->setVisible(show);
    btnStop->raise();
    PlaceProgress();
}

void StatusBarView::ShowNow() {
    showIsDue_ = false;
    info_->Show(panels_.Info());
    size_->Show(panels_.Size());
    count_->Show({panels_.Count().text, tr("Number of archived files")});
}

// The button to stop stands at the end of the same panel, the mark of failures at that of the first.
void StatusBarView::PlaceProgress() {
    const QRect panel = size_->geometry();
    const int top = ToPixels(40);
    const int stop = btnStop->isHidden() ? 0 : btnStop->sizeHint().width();
    prbFiles->setGeometry(panel.left() + ToPixels(10), top, panel.width() - ToPixels(20) - stop,
                          height() - ToPixels(60));
    btnStop->setGeometry(panel.right() - stop, top / 2, stop, height() - top / 2);
    const QRect info = info_->geometry();
    const int mark = btnFailures->isHidden() ? 0 : btnFailures->sizeHint().width();
    btnFailures->setGeometry(info.right() - mark, top / 2, mark, height() - top / 2);
    info_->setContentsMargins(panelMargin, 1, panelMargin + mark, 1);
}

} // namespace quellbox
