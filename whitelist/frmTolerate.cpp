#include "whitelist/frmTolerate.h"

#include "mail/DisplayText.h"
#include "platform/RuntimeError.h"
#include "settings/frmMessageBox.h"
#include "ui_frmTolerate.h"
#include "whitelist/WhitelistStore.h"

#include <QKeyEvent>

namespace quellbox {

namespace {

/// A box with more lines would not fit on a small screen.
constexpr qsizetype mostNames = 10;

QString LeftOutText(const QStringList& entries) {
    QStringList lines;
    for (const QString& entry : entries.mid(0, mostNames)) {
        lines += CleanseForDisplay(entry);
    }
    if (entries.size() > mostNames) {
        lines += frmTolerate::tr("and %n more", nullptr, static_cast<int>(entries.size() - mostNames));
    }
    return frmTolerate::tr("The settings of this system hold only one of several entries that differ in upper and "
                           "lower case only. The list is stored without these:") +
           QStringLiteral("\n\n") + lines.join(QLatin1Char('\n'));
}

} // namespace

frmTolerate::frmTolerate(SettingsStore& store, AppState& state, QWidget* parent)
    : QDialog(parent), store_(store), state_(state), ui_(new Ui::frmTolerate), entries_(LoadWhitelist(store)),
      modeWord_(ToleranceWord::whitelist) {
    ui_->setupUi(this);
    ShowEntries();
    connect(ui_->cboTolerate, &EntryCombo::GotFocus, this, &frmTolerate::UpdateWhitelistButtons);
    connect(ui_->cboTolerate, &EntryCombo::Change, this, &frmTolerate::cboTolerate_Change);
    connect(ui_->cboTolerate, &EntryCombo::Click, this, &frmTolerate::cboTolerate_Click);
    connect(ui_->btnAdd, &QPushButton::clicked, this, &frmTolerate::btnAdd_Click);
    connect(ui_->btnRemove, &QPushButton::clicked, this, &frmTolerate::btnRemove_Click);
    connect(ui_->btnAll, &QPushButton::clicked, this, &frmTolerate::btnAll_Click);
    connect(ui_->btnCancel, &QPushButton::clicked, this, &frmTolerate::btnCancel_Click);
    connect(ui_->btnOK, &QPushButton::clicked, this, &frmTolerate::btnOK_Click);
    UpdateWhitelistButtons();
    ui_->cboTolerate->setFocus();
}

frmTolerate::~frmTolerate() = default;

void frmTolerate::SetMode(const QString& modeWord) {
    modeWord_ = modeWord;
    UpdateWhitelistButtons();
}

void frmTolerate::SetSender(const QString& sender) {
    ui_->cboTolerate->SetText(sender);
}

void frmTolerate::SetStatus(const QString& text) {
    ui_->stbBottom->showMessage(text);
}

void frmTolerate::UpdateWhitelistButtons() {
    TolerateMode = modeWord_ == ToleranceWord::tolerate;
    const QString text = ui_->cboTolerate->Text();
    // The focus alone must not enable what the validation has just refused.
    const bool canAdd = !text.trimmed().isEmpty() && IsValidEntry(text);
    ui_->btnAdd->setEnabled(canAdd);
    ui_->cboTolerate->SetLocked(TolerateMode);
    ui_->btnAll->setEnabled(ui_->cboTolerate->Count() > 0 && !TolerateMode);
    ui_->btnRemove->setEnabled(ui_->cboTolerate->ListIndex() >= 0 && !TolerateMode);
    (canAdd ? ui_->btnAdd : ui_->btnOK)->setDefault(true);
}

void frmTolerate::cboTolerate_Change() {
    if (IsValidEntry(ui_->cboTolerate->Text())) {
        UpdateWhitelistButtons();
        SetStatus({});
        return;
    }
    ui_->btnAdd->setEnabled(false);
    ui_->btnRemove->setEnabled(false); // what is typed is no entry of the list
    SetStatus(tr("Invalid email address specified"));
}

void frmTolerate::cboTolerate_Click() {
    SetStatus({});
    UpdateWhitelistButtons();
}

void frmTolerate::btnAdd_Click() {
    const AddResult added =
        entries_.Add(ui_->cboTolerate->Text(), [this](const QString& domain) { return ConfirmDomain(domain); });
    switch (added.outcome) {
    case AddResult::Outcome::Refused:
        return;
    case AddResult::Outcome::AlreadyPresent:
        ui_->cboTolerate->Pick(added.index);
        return;
    case AddResult::Outcome::Added:
        ShowEntries();
        ui_->cboTolerate->BringIntoView(added.index);
        UpdateWhitelistButtons();
        ui_->btnOK->setFocus();
        return;
    }
}

void frmTolerate::btnRemove_Click() {
    const int index = ui_->cboTolerate->ListIndex();
    if (index < 0) {
        return;
    }
    entries_.Remove(index);
    ShowEntries();
    ui_->cboTolerate->setFocus();
    UpdateWhitelistButtons();
}

void frmTolerate::btnAll_Click() {
    entries_.Clear();
    ShowEntries();
    UpdateWhitelistButtons();
}

void frmTolerate::btnCancel_Click() {
    state_.ToleranceResult.clear();
    reject();
}

void frmTolerate::btnOK_Click() {
    try {
        const QStringList leftOut = SaveWhitelist(store_, entries_.Entries());
        if (!leftOut.isEmpty()) {
            Tell("msgLeftOut", LeftOutText(leftOut));
        }
    } catch (const RuntimeError& error) {
        // The dialog stays open, so that the list is not lost.
        Tell("msgError", error.Text());
        return;
    }
    state_.ToleranceResult = ToleranceWord::ok;
    accept();
}

void frmTolerate::Tell(const char* name, const QString& text) {
    ShowMessageBox(QMessageBox::Warning, {QLatin1String(name), windowTitle(), text}, this);
}

bool frmTolerate::ConfirmDomain(const QString& domainUpper) {
    return AskInMessageBox(QMessageBox::Question,
                           {QStringLiteral("msgDomain"), DomainQuestionTitle(), DomainQuestion(domainUpper)}, this);
}

void frmTolerate::ShowEntries() {
    ui_->cboTolerate->SetEntries(entries_.Entries());
}

// Escape is Cancel, which tells the caller; closing the window by its frame deliberately tells nothing.
void frmTolerate::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel)) {
        ui_->btnCancel->click();
        return;
    }
    QDialog::keyPressEvent(event);
}

} // namespace quellbox
