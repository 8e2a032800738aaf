#include "app/HelpDesk.h"

#include "app/ErrorReport.h"
#include "app/ModalWindow.h"
#include "app/frmAbout.h"
#include "app/frmHelp.h"
#include "dialogs/HelpContents.h"

#include <QAbstractButton>

namespace quellbox {

HelpDesk::HelpDesk(const HelpParts& parts) : parts_(parts) {}

HelpDesk::~HelpDesk() = default;

template <class Handler>
void HelpDesk::Guarded(Handler handler) {
    RunReporting(handler, [this](const QString& text) { Q_EMIT Failed(text); });
}

void HelpDesk::mnuHelpStarting_Click(qint16 index) {
    if (parts_.shell.HasHelpViewer()) {
        ShowInHelpViewer({}, index == 0 ? HelpCommand::DisplayTopic : HelpCommand::Context, index);
        return;
    }
    if (index == 0) {
        HelpWindow().ShowDefaultTopic();
    } else {
        HelpWindow().ShowContext(index);
    }
    KeepUsableBesideDialogs();
}

void HelpDesk::ShowHelpOf(const QWidget* widget) {
    QString topic;
    while (widget != nullptr && topic.isEmpty()) {
        widget = widget->window();
        topic = HelpTopicOfForm(widget->objectName());
        widget = widget->parentWidget();
    }
    if (parts_.shell.HasHelpViewer()) {
        ShowInHelpViewer(topic, HelpCommand::DisplayTopic, 0);
    } else if (topic.isEmpty()) {
        mnuHelpStarting_Click(0);
    } else {
        HelpWindow().ShowTopic(topic);
        KeepUsableBesideDialogs();
    }
}

void HelpDesk::ShowInHelpViewer(const QString& topic, HelpCommand command, qint16 contextId) {
    const QString file = parts_.program.HelpFile;
    const QString target = topic.isEmpty() ? file : file + QStringLiteral("::/") + topic;
    if (!parts_.shell.ShowHelp(parts_.window.winId(), target, command, static_cast<quintptr>(contextId))) {
        Q_EMIT Failed(tr("This system has no viewer for help files:\n\n%1").arg(file));
    }
}

frmHelp& HelpDesk::HelpWindow() {
    if (help_ == nullptr) {
        help_ =
            std::make_unique<frmHelp>(parts_.shell, parts_.store, [this](const QString& text) { Q_EMIT Failed(text); });
    }
    return *help_;
}

void HelpDesk::KeepUsableBesideDialogs() {
    if (help_ != nullptr && help_->isVisible()) {
        help_->windowHandle()->setTransientParent(ModalWindow());
    }
}

// The Help buttons of the dialogs need no code of their own.
void HelpDesk::ConnectHelpButton(const QWidget* form) {
    for (const char* name : {"btnHelp", "cmdHelp"}) {
        if (const auto* button = form->findChild<QAbstractButton*>(QLatin1String(name))) {
            connect(button, &QAbstractButton::clicked, this, &HelpDesk::btnHelp_Click, Qt::UniqueConnection);
        }
    }
}

void HelpDesk::btnHelp_Click() {
    const auto* button = qobject_cast<QWidget*>(sender());
    Guarded([this, button] { ShowHelpOf(button); });
}

bool HelpDesk::HelpKeyDown(const QWidget* widget) {
    if (help_ != nullptr && widget->window() == help_.get()) {
        return false;
    }
    Guarded([this, widget] { ShowHelpOf(widget); });
    return true;
}

void HelpDesk::mnuHelpCheck_Click() {
    parts_.shell.Open(parts_.program.UpdatePage());
}

void HelpDesk::mnuHelpFeedback_Click() {
    parts_.shell.Open(parts_.program.FeedbackPage());
}

void HelpDesk::mnuHelpAbout_Click() {
    const RefreshTimer::Hold rest(parts_.timer);
    frmAbout(parts_.program, parts_.files, parts_.shell, &parts_.window).exec();
}

void HelpDesk::Close() {
    if (help_ != nullptr) {
        help_->close();
    }
}

} // namespace quellbox
