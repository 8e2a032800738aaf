#include "dialogs/frmDeliveryFields.h"

#include "delivery/DeliveryCommand.h"
#include "mail/DisplayText.h"
#include "settings/DeliveryKeys.h"
#include "ui_frmDeliveryFields.h"

#include <QAbstractItemView>
#include <QRegularExpression>

#include <algorithm>

namespace quellbox {

namespace {

constexpr int lastPort = 65535;

void Choose(QComboBox& box, const QString& key) {
    box.setCurrentIndex(std::max(0, box.findData(key)));
}

/// Assistive tools know the name of a box from its label, but not that of the list that it opens.
void NameList(const QComboBox& box, const QLabel& label) {
    box.view()->setAccessibleName(label.text().remove(QLatin1Char('&')));
}

/// Whether a folder has the name that an Exchange server gives its pickup directory.
bool IsCalledPickup(const QString& folder) {
    static const QRegularExpression pattern(QStringLiteral(R"((\A|[/\\])pickup[/\\]*\z)"),
                                            QRegularExpression::CaseInsensitiveOption);
    return pattern.match(folder).hasMatch();
}

} // namespace

DeliveryFields::DeliveryFields(QWidget* parent) : QWidget(parent), ui_(new Ui::frmDeliveryFields) {
    ui_->setupUi(this);
    FillChoices();
    ui_->txtSmtpPort->SetBounds(1, lastPort);
    connect(ui_->cboDelivery, &QComboBox::currentIndexChanged, this, &DeliveryFields::cboDelivery_Change);
    cboDelivery_Change();
}

DeliveryFields::~DeliveryFields() = default;

// The places of the ways are those of their pages.
void DeliveryFields::FillChoices() {
    ui_->cboDelivery->addItem(tr("the pickup directory"), QLatin1String(DeliveryKeys::pickup));
    ui_->cboDelivery->addItem(tr("Exchange's replay directory"), QLatin1String(DeliveryKeys::replay));
    ui_->cboDelivery->addItem(tr("SMTP, to a mail server"), QLatin1String(DeliveryKeys::smtp));
    ui_->cboDelivery->addItem(tr("a command"), QLatin1String(DeliveryKeys::command));
    ui_->cboSmtpSecurity->addItem(tr("TLS as soon as the server offers it (STARTTLS)"),
                                  QLatin1String(SecurityKeys::startTls));
    ui_->cboSmtpSecurity->addItem(tr("TLS from the beginning"), QLatin1String(SecurityKeys::tls));
    ui_->cboSmtpSecurity->addItem(tr("none; then without a user"), QLatin1String(SecurityKeys::none));
    NameList(*ui_->cboDelivery, *ui_->lblDelivery);
    NameList(*ui_->cboSmtpSecurity, *ui_->lblSmtpSecurity);
}

void DeliveryFields::ShowSettings(const AppState& state) {
    Choose(*ui_->cboDelivery, state.Delivery);
    ui_->txtSmtpHost->setText(state.SmtpHost);
    ui_->txtSmtpPort->SetValue(state.SmtpPort);
    Choose(*ui_->cboSmtpSecurity, state.SmtpSecurity);
    ui_->txtSmtpUser->setText(state.SmtpUser);
    ui_->txtDeliveryCommand->setText(state.DeliveryCommand);
    ShowPickup(state.PickupDir);
}

void DeliveryFields::ShowPickup(const QString& folder) {
    pickup_ = folder;
    ui_->lblReplay->setText(tr("The directory that is set as the pickup directory: %1").arg(CleanseForDisplay(folder)));
    DescribeWay();
}

// Assistive tools read the text with the choice, as it cannot get the focus itself.
void DeliveryFields::DescribeWay() {
    const bool isReplay = ui_->cboDelivery->currentData().toString() == QLatin1String(DeliveryKeys::replay);
    ui_->cboDelivery->setAccessibleDescription(isReplay ? ui_->lblReplay->text() : QString());
}

void DeliveryFields::cboDelivery_Change() {
    ui_->stkDelivery->setCurrentIndex(ui_->cboDelivery->currentIndex());
    ui_->lblDeliveryTrouble->setText({});
    DescribeWay();
}

QWidget* DeliveryFields::IncompleteField() {
    const QString way = ui_->cboDelivery->currentData().toString();
    QString problem;
    if (way == QLatin1String(DeliveryKeys::command) &&
        !ParseDeliveryCommand(ui_->txtDeliveryCommand->text(), &problem)) {
        return Refuse(ui_->txtDeliveryCommand, problem);
    }
    if (way == QLatin1String(DeliveryKeys::replay) && IsCalledPickup(pickup_)) {
        return Refuse(ui_->cboDelivery,
                      tr("This is the Pickup directory of the server, which does not read the envelope "
                         "in a file. Set the Replay directory beside it."));
    }
    if (way != QLatin1String(DeliveryKeys::smtp)) {
        return nullptr;
    }
    if (ui_->txtSmtpHost->text().trimmed().isEmpty()) {
        return Refuse(ui_->txtSmtpHost, tr("The name of the mail server is needed."));
    }
    const bool isOpen = ui_->cboSmtpSecurity->currentData().toString() == QLatin1String(SecurityKeys::none);
    if (isOpen && !ui_->txtSmtpUser->text().trimmed().isEmpty()) {
        return Refuse(ui_->cboSmtpSecurity, tr("A password is sent through a secured connection only."));
    }
    return nullptr;
}

// Assistive tools read it with the field.
QWidget* DeliveryFields::Refuse(QWidget* field, const QString& why) {
    ui_->lblDeliveryTrouble->setText(why);
    field->setAccessibleDescription(why);
    return field;
}

void DeliveryFields::TakeSettings(AppState& state) const {
    state.Delivery = ui_->cboDelivery->currentData().toString();
    state.SmtpHost = ui_->txtSmtpHost->text().trimmed();
    state.SmtpPort = ui_->txtSmtpPort->Value();
    state.SmtpSecurity = ui_->cboSmtpSecurity->currentData().toString();
    state.SmtpUser = ui_->txtSmtpUser->text().trimmed();
    state.DeliveryCommand = ui_->txtDeliveryCommand->text();
}

std::optional<QString> DeliveryFields::EnteredPassword() const {
    return ui_->txtSmtpPassword->isModified() ? std::optional(ui_->txtSmtpPassword->text()) : std::nullopt;
}

} // namespace quellbox
