#include "dialogs/frmOwnServer.h"

#include "mail/FieldNames.h"
#include "ui_frmOwnServer.h"

#include <QAbstractItemView>
#include <QLayout>

#include <algorithm>

namespace quellbox {

namespace {

constexpr qsizetype readableLength = 120; // of what a message says, which may be of any length

QString Shortened(const QString& text) {
    return text.size() <= readableLength ? text : text.left(readableLength) + QStringLiteral("...");
}

bool NeedsText(const QString& form) {
    return form == QLatin1String(RatingKeys::behind) || form == QLatin1String(RatingKeys::count);
}

QString InOneForm(const QLineEdit& names) {
    return SplitFieldNames(names.text()).join(QStringLiteral(", "));
}

} // namespace

frmOwnServer::frmOwnServer(const FileSystem& files, WorkPool& pool, const Folder& archive, const OwnServer& server,
                           QWidget* parent)
    : QDialog(parent), files_(files), pool_(pool), archive_(archive), ui_(new Ui::frmOwnServer) {
    ui_->setupUi(this);
    ui_->cboRatingForm->addItem(tr("the number at the beginning"), QLatin1String(RatingKeys::number));
    ui_->cboRatingForm->addItem(tr("the number behind a text"), QLatin1String(RatingKeys::behind));
    ui_->cboRatingForm->addItem(tr("the text before a per cent sign"), QLatin1String(RatingKeys::percent));
    ui_->cboRatingForm->addItem(tr("how often a character is at the beginning"), QLatin1String(RatingKeys::count));
    ui_->cboRatingForm->view()->setAccessibleName(ui_->lblRatingForm->text().remove(QLatin1Char('&')));
    // The fields stay in their places when something is said below them.
    const int line = fontMetrics().lineSpacing();
    ui_->lblTrouble->setMinimumHeight(2 * line);
    ui_->lblFound->setMinimumHeight(5 * line);
    ShowServer(server);
    cboRatingForm_Change();
    ConnectControls();
}

frmOwnServer::~frmOwnServer() = default;

void frmOwnServer::ShowServer(const OwnServer& server) {
    ui_->txtRating->setText(server.rating);
    ui_->cboRatingForm->setCurrentIndex(std::max(0, ui_->cboRatingForm->findData(server.ratingForm)));
    ui_->txtRatingText->setText(server.ratingText);
    ui_->txtSenders->setText(server.senders);
    ui_->txtRecipients->setText(server.recipients);
    ui_->chkRecipientsRepeat->setChecked(server.recipientsRepeat);
    ui_->txtReasons->setText(server.reasons);
    ui_->txtEnding->setText(server.ending);
    ui_->chkPacked->setChecked(server.packed);
    ui_->chkMaildir->setChecked(server.maildir);
}

void frmOwnServer::ConnectControls() {
    for (const QLineEdit* field : findChildren<QLineEdit*>()) {
        connect(field, &QLineEdit::textChanged, this, &frmOwnServer::Changed);
    }
    for (const QCheckBox* box : findChildren<QCheckBox*>()) {
        connect(box, &QCheckBox::toggled, this, &frmOwnServer::Changed);
    }
    connect(ui_->cboRatingForm, &QComboBox::currentIndexChanged, this, &frmOwnServer::cboRatingForm_Change);
    connect(ui_->btnTry, &QPushButton::clicked, this, &frmOwnServer::btnTry_Click);
    connect(ui_->btnOK, &QPushButton::clicked, this, &frmOwnServer::btnOK_Click);
    connect(ui_->btnCancel, &QPushButton::clicked, this, &QDialog::reject);
}

OwnServer frmOwnServer::Described() const {
    return {.rating = ui_->txtRating->text().trimmed(),
            .ratingForm = ui_->cboRatingForm->currentData().toString(),
            .ratingText = ui_->txtRatingText->text().trimmed(),
            .senders = InOneForm(*ui_->txtSenders),
            .recipients = InOneForm(*ui_->txtRecipients),
            .recipientsRepeat = ui_->chkRecipientsRepeat->isChecked(),
            .reasons = InOneForm(*ui_->txtReasons),
            .packed = ui_->chkPacked->isChecked(),
            .ending = ui_->txtEnding->text().trimmed(),
            .maildir = ui_->chkMaildir->isChecked()};
}

void frmOwnServer::cboRatingForm_Change() {
    const bool needsText = NeedsText(ui_->cboRatingForm->currentData().toString());
    ui_->lblRatingText->setEnabled(needsText);
    ui_->txtRatingText->setEnabled(needsText);
    Changed();
}

// What was said about the fields is about what they were.
void frmOwnServer::Changed() {
    AcceptAll();
    trial_.reset();
    TellFound({});
}

bool frmOwnServer::IsUsable() {
    AcceptAll();
    return !(RefusesRating() || RefusesRatingText() || RefusesNames(ui_->txtSenders, true) ||
             RefusesNames(ui_->txtRecipients, true) || RefusesNames(ui_->txtReasons, false)) &&
           (IsFileEnding(ui_->txtEnding->text()) ||
            Refuse(ui_->txtEnding, tr("The name of a file has no slashes and no characters that cannot be seen.")));
}

// Assistive tools read it with the field.
bool frmOwnServer::Refuse(QWidget* field, const QString& why) {
    ui_->lblTrouble->setText(why);
    field->setAccessibleDescription(why);
    field->setFocus();
    GrowToText();
    return false;
}

void frmOwnServer::AcceptAll() {
    ui_->lblTrouble->setText({});
    for (QLineEdit* field : findChildren<QLineEdit*>()) {
        field->setAccessibleDescription({});
    }
}

bool frmOwnServer::RefusesName(QLineEdit* field, const QString& name) {
    return !IsFieldName(name) && !Refuse(field, tr("\"%1\" cannot be the name of a header field. Such a name has no "
                                                   "blanks, no colon and no accented letters.")
                                                    .arg(Shortened(name)));
}

bool frmOwnServer::RefusesRating() {
    const QString name = ui_->txtRating->text().trimmed();
    if (name.contains(QLatin1Char(','))) {
        return !Refuse(ui_->txtRating, tr("The spam confidence stands in one field only."));
    }
    return !name.isEmpty() && RefusesName(ui_->txtRating, name);
}

bool frmOwnServer::RefusesRatingText() {
    const QString form = ui_->cboRatingForm->currentData().toString();
    const QString text = ui_->txtRatingText->text().trimmed();
    if (!NeedsText(form)) {
        return false;
    }
    if (form == QLatin1String(RatingKeys::count) && text.size() != 1) {
        return !Refuse(ui_->txtRatingText, tr("Enter the one character that is counted."));
    }
    if (text.isEmpty()) {
        return !Refuse(ui_->txtRatingText, tr("Enter the text behind which the number stands."));
    }
    return !IsRatingText(text) && !Refuse(ui_->txtRatingText, tr("Only ASCII can be found here."));
}

bool frmOwnServer::RefusesNames(QLineEdit* field, bool isEnvelope) {
    for (const QString& name : SplitFieldNames(field->text())) {
        if (RefusesName(field, name)) {
            return true;
        }
        if (isEnvelope && IsFieldOfMessage(name.toLatin1())) {
            return !Refuse(field,
                           tr("\"%1\" is written by the sender of a message, and says nothing about its envelope.")
                               .arg(Shortened(name)));
        }
    }
    return false;
}

// A button that is disabled would give the focus to the next one.
void frmOwnServer::btnTry_Click() {
    if (trial_ || !IsUsable()) {
        return;
    }
    TellFound(tr("Looking at the newest message..."));
    trial_ = std::make_unique<OwnServerTrial>(files_, pool_, archive_, Described(),
                                              [this](const OwnServerTrial::Result& result) { ShowFound(result); });
    trial_->Start();
}

void frmOwnServer::ShowFound(const OwnServerTrial::Result& result) {
    trial_.reset();
    const QString nothing = tr("nothing");
    const auto shown = [&nothing](const QString& text) { return text.isEmpty() ? nothing : Shortened(text); };
    if (result.file.isEmpty()) {
        TellFound(result.error.isEmpty() ? tr("The archive holds no messages.")
                                         : tr("The archive cannot be read: %1").arg(result.error));
    } else if (!result.error.isEmpty()) {
        TellFound(tr("%1 cannot be read: %2").arg(Shortened(result.file), result.error));
    } else {
        TellFound(tr("Message: %1\nSpam confidence: %2\nEnvelope sender: %3\nRecipients: %4")
                      .arg(Shortened(result.file), shown(result.rating), shown(result.sender),
                           shown(result.recipients.join(QStringLiteral(", ")))));
    }
}

// Assistive tools read it with the button.
void frmOwnServer::TellFound(const QString& text) {
    ui_->lblFound->setText(text);
    ui_->btnTry->setAccessibleDescription(text);
    GrowToText();
}

// What a message says may need more lines than there are. Layouts remember heights until they are activated.
void frmOwnServer::GrowToText() {
    ui_->fraTrial->layout()->activate();
    layout()->activate();
    const int needed = layout()->totalHeightForWidth(width());
    if (isVisible() && needed > height()) {
        resize(width(), needed);
    }
}

void frmOwnServer::btnOK_Click() {
    if (IsUsable()) {
        accept();
    }
}

} // namespace quellbox
