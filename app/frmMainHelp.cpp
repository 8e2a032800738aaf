#include "app/TrayPresence.h"
#include "app/frmAbout.h"
#include "app/frmHelp.h"
#include "app/frmMain.h"
#include "dialogs/HelpContents.h"

#include <QAbstractButton>
#include <QApplication>
#include <QWindow>

namespace quellbox {

void frmMain::mnuHelpStarting_Click(qint16 index) {
    if (ports_.shell.HasHelpViewer()) {
        ShowInHelpViewer({}, index == 0 ? HelpCommand::DisplayTopic : HelpCommand::Context, index);
    } else if (index == 0) {
        HelpWindow().ShowDefaultTopic();
        LetUseBesideDialogs();
    } else {
        HelpWindow().ShowContext(index);
        LetUseBesideDialogs();
    }
}

// The first of the windows, from this one to those it stands above, that has a topic of its own.
void frmMain::ShowHelpOf(const QWidget* form) {
    QString topic;
    while (form != nullptr && topic.isEmpty()) {
        form = form->window();
        topic = HelpTopicOfForm(form->objectName());
        form = form->parentWidget();
    }
    if (ports_.shell.HasHelpViewer()) {
        ShowInHelpViewer(topic, HelpCommand::DisplayTopic, 0);
    } else if (topic.isEmpty()) {
        mnuHelpStarting_Click(0);
    } else {
        HelpWindow().ShowTopic(topic);
        LetUseBesideDialogs();
    }
}

void frmMain::ShowInHelpViewer(const QString& topic, HelpCommand command, qint16 contextId) {
    const QString file = ports_.program.HelpFile;
    const QString target = topic.isEmpty() ? file : file + QStringLiteral("::/") + topic;
    if (!ports_.shell.ShowHelp(winId(), target, command, static_cast<quintptr>(contextId))) {
        ReportError(tr("This system has no viewer for help files:\n\n%1").arg(file));
    }
}

frmHelp& frmMain::HelpWindow() {
    if (help_ == nullptr) {
        help_ =
            std::make_unique<frmHelp>(ports_.shell, ports_.store, [this](const QString& text) { ReportError(text); });
    }
    return *help_;
}

// Help must be readable, and the tray icon be clicked, beside a dialog, which blocks every window but those that belong
// to it.
void frmMain::LetUseBesideDialogs() {
    const QWidget* modal = QApplication::activeModalWidget();
    QWindow* owner = modal != nullptr ? modal->windowHandle() : nullptr;
    tray_->KeepUsableBeside(owner);
    if (help_ != nullptr && help_->isVisible()) {
        help_->windowHandle()->setTransientParent(owner);
    }
}

// The Help buttons of the dialogs need no code of their own.
void frmMain::ConnectHelpButton(const QWidget* form) {
    for (const char* name : {"btnHelp", "cmdHelp"}) {
        if (const auto* button = form->findChild<QAbstractButton*>(QLatin1String(name))) {
            connect(button, &QAbstractButton::clicked, this, &frmMain::btnHelp_Click, Qt::UniqueConnection);
        }
    }
}

void frmMain::btnHelp_Click() {
    const auto* button = qobject_cast<QWidget*>(sender());
    Guarded([this, button] { ShowHelpOf(button); });
}

bool frmMain::HelpKeyDown(QWidget* widget) {
    if (help_ != nullptr && widget->window() == help_.get()) {
        return false;
    }
    Guarded([this, widget] { ShowHelpOf(widget); });
    return true;
}

void frmMain::mnuHelpCheck_Click() {
    ports_.shell.Open(ports_.program.UpdatePage());
}

void frmMain::mnuHelpFeedback_Click() {
    ports_.shell.Open(ports_.program.FeedbackPage());
}

void frmMain::mnuHelpAbout_Click() {
    const RefreshTimer::Hold rest(timer_);
    frmAbout(ports_.program, ports_.files, ports_.shell, this).exec();
}

} // namespace quellbox
