#include "dialogs/frmOptions.h"
#include "mail/DisplayText.h"

#include "dialogs/InformationTree.h"
#include "dialogs/IntervalText.h"
#include "dialogs/frmOwnServer.h"
#include "settings/ChosenProfile.h"
#include "ui_frmOptions.h"

#include <QAbstractItemView>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QShortcut>

namespace quellbox {

namespace {

constexpr qint16 proposedDays = 30; // to keep deleted messages

QIcon Symbol(const char* name) {
    return QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
}

/// Whether what a key or an input method enters into the interval is no part of a number. Keys without a character of
/// their own, and those with Ctrl or Alt, are commands. What is pasted is deliberately not looked at: it is read as a
/// number when the interval is left, as far as it is one.
bool EntersForeignText(const QEvent& event) {
    if (event.type() == QEvent::InputMethod) {
        const auto& input = static_cast<const QInputMethodEvent&>(event);
        return !IsIntervalText(input.commitString()) || !IsIntervalText(input.preeditString());
    }
    if (event.type() != QEvent::KeyPress) {
        return false;
    }
    const auto& key = static_cast<const QKeyEvent&>(event);
    const QString text = key.text();
    return !text.isEmpty() && text.front().isPrint() && !IsIntervalText(text);
}

} // namespace

frmOptions::frmOptions(const FileSystem& files, WorkPool& pool, const ProgramInfo& program, AppState& state,
                       OptionsCalls calls, QWidget* parent)
    : QDialog(parent), files_(files), pool_(pool), program_(program), state_(state), calls_(std::move(calls)),
      ui_(new Ui::frmOptions), Own(state.Own), ChosenFilter(state.FilterDays), ChosenToleration(state.TolerationLevel) {
    ui_->setupUi(this);
    imlSymbols = {{QStringLiteral("general"), Symbol("info")},     {QStringLiteral("directories"), Symbol("folder")},
                  {QStringLiteral("filter"), Symbol("filter")},    {QStringLiteral("toleration"), Symbol("tolerate")},
                  {QStringLiteral("settings"), Symbol("options")}, {QStringLiteral("history"), Symbol("history")},
                  {QStringLiteral("server"), Symbol("server")},    {QStringLiteral("program"), Symbol("quellbox")}};
    NumberTheButtons();
    ShowSettings();
    ConnectControls();
    ui_->tbsOptions->setCurrentIndex(qBound(0, state_.OptionsTab, ui_->tbsOptions->count() - 1));
    tbsOptions_Click(ui_->tbsOptions->currentIndex());
    ShowInformation();
    ui_->tbsOptions->setFocus();
}

frmOptions::~frmOptions() {
    hide(); // the focus leaves the interval while there still is someone to hear of it
}

// The number of an option button is the value of the setting that it stands for; a tab has its key as data.
void frmOptions::NumberTheButtons() {
    ui_->grpDays->setId(ui_->optDays0, 0);
    ui_->grpDays->setId(ui_->optDays1, 1);
    ui_->grpDays->setId(ui_->optDays2, 2);
    ui_->grpDays->setId(ui_->optDays7, 7);
    ui_->grpToleration->setId(ui_->optToleration2, 2);
    ui_->grpToleration->setId(ui_->optToleration1, 1);
    ui_->grpToleration->setId(ui_->optToleration0, 0);
    const QStringList keys{QStringLiteral("general"),    QStringLiteral("directories"), QStringLiteral("filter"),
                           QStringLiteral("toleration"), QStringLiteral("settings"),    QStringLiteral("history"),
                           QStringLiteral("server")};
    for (int tab = 0; tab < keys.size(); ++tab) {
        ui_->tbsOptions->tabBar()->setTabData(tab, keys[tab]);
        ui_->tbsOptions->setTabIcon(tab, imlSymbols[keys[tab]]);
    }
}

void frmOptions::ShowSettings() {
    ui_->sliRefreshInterval->setValue(state_.RefreshInterval);
    sliRefreshInterval_Change(ui_->sliRefreshInterval->value());
    ui_->chkRawBody->setChecked(state_.RawBody == 1);
    ui_->chkAutoRefresh->setChecked(state_.AutoRefresh == 1);
    ui_->chkOutlookExpress->setChecked(state_.OutlookExpress == 1);
    chkAutoRefresh_Click();
    ShowHistorySettings();
    ShowServers();
    ui_->txtArchive->setText(CleanseForDisplay(state_.ArchiveDir));
    ui_->txtPickup->setText(CleanseForDisplay(state_.PickupDir));
    // A stored value that no button stands for leaves all of them unselected.
    if (QAbstractButton* days = ui_->grpDays->button(state_.FilterDays)) {
        days->setChecked(true);
    }
    if (QAbstractButton* level = ui_->grpToleration->button(state_.TolerationLevel)) {
        level->setChecked(true);
    }
}

// Where nothing is kept yet, the box proposes a number.
void frmOptions::ShowHistorySettings() {
    const bool keeps = state_.KeepDeletedDays > 0;
    ui_->txtKeepDeletedDays->SetBounds(1, 999);
    ui_->txtKeepDeletedDays->SetValue(keeps ? state_.KeepDeletedDays : proposedDays);
    ui_->chkKeepDeleted->setChecked(keeps);
    chkKeepDeleted_Click();
    ui_->txtHistoryDays->SetBounds(0, 9999);
    ui_->txtHistoryDays->SetValue(state_.HistoryDays);
}

void frmOptions::ShowServers() {
    const auto add = [this](const ServerProfile& profile) {
        ui_->cboServer->addItem(QCoreApplication::translate("quellbox", profile.name), profile.key);
    };
    for (const ServerProfile& profile : ServerProfiles()) {
        add(profile);
    }
    add(MakeOwnProfile(Own));
    ui_->cboServer->view()->setAccessibleName(ui_->lblServer->text().remove(QLatin1Char('&')));
    ui_->cboServer->setCurrentIndex(ui_->cboServer->findData(ChosenProfile(state_).key));
    cboServer_Change();
    ui_->delivery->ShowSettings(state_);
}

void frmOptions::ConnectControls() {
    for (int tab = 0; tab < ui_->tbsOptions->count(); ++tab) {
        ui_->tbsOptions->widget(tab)->installEventFilter(this);
    }
    ui_->txtRefreshInterval->installEventFilter(this);
    connect(ui_->tbsOptions, &QTabWidget::currentChanged, this, &frmOptions::tbsOptions_Click);
    // A shortcut comes before the controls, whichever of them has the focus.
    auto* nextTab = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), this);
    connect(nextTab, &QShortcut::activated, this, &frmOptions::SelectNextTab);
    connect(ui_->grpDays, &QButtonGroup::idToggled, this,
            [this](int days, bool on) { ChosenFilter = on ? static_cast<qint16>(days) : ChosenFilter; });
    connect(ui_->grpToleration, &QButtonGroup::idToggled, this,
            [this](int level, bool on) { ChosenToleration = on ? static_cast<qint16>(level) : ChosenToleration; });
    connect(ui_->chkAutoRefresh, &QCheckBox::toggled, this, &frmOptions::chkAutoRefresh_Click);
    connect(ui_->chkKeepDeleted, &QCheckBox::toggled, this, &frmOptions::chkKeepDeleted_Click);
    connect(ui_->txtRefreshInterval, &QLineEdit::editingFinished, this, &frmOptions::txtRefreshInterval_Validate);
    connect(ui_->sliRefreshInterval, &QSlider::valueChanged, this, &frmOptions::sliRefreshInterval_Change);
    connect(ui_->btnArchive, &QPushButton::clicked, this, &frmOptions::btnArchive_Click);
    connect(ui_->btnPickup, &QPushButton::clicked, this, &frmOptions::btnPickup_Click);
    connect(ui_->btnTolerate, &QPushButton::clicked, this, &frmOptions::btnTolerate_Click);
    connect(ui_->cboServer, &QComboBox::activated, this, &frmOptions::DropDetection);
    connect(ui_->cboServer, &QComboBox::currentIndexChanged, this, &frmOptions::cboServer_Change);
    connect(ui_->btnOwnServer, &QPushButton::clicked, this, &frmOptions::btnOwnServer_Click);
    connect(ui_->btnDetect, &QPushButton::clicked, this, &frmOptions::btnDetect_Click);
    connect(ui_->cmdOK, &QPushButton::clicked, this, &frmOptions::cmdOK_Click);
    connect(ui_->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmOptions::ShowInformation() {
    ui_->trvOptions->clear();
    ui_->trvOptions->header()->setStretchLastSection(false); // long paths scroll
    ui_->trvOptions->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    for (const InformationNode& root : BuildInformationTree(program_, state_, files_, QLocale())) {
        auto* item = new QTreeWidgetItem(ui_->trvOptions, {root.text});
        item->setData(0, Qt::UserRole, root.key);
        item->setIcon(0, imlSymbols[root.key]);
        for (const InformationNode& child : root.children) {
            new QTreeWidgetItem(item, {child.text});
        }
    }
    ui_->trvOptions->expandAll();
}

// The frame of the selected tab is the only one that is shown (the tab strip sees to that) and enabled.
void frmOptions::tbsOptions_Click(int tab) {
    for (int index = 0; index < ui_->tbsOptions->count(); ++index) {
        ui_->tbsOptions->widget(index)->setEnabled(index == tab);
    }
    state_.OptionsTab = tab;
}

void frmOptions::SelectNextTab() {
    ui_->tbsOptions->setCurrentIndex((ui_->tbsOptions->currentIndex() + 1) % ui_->tbsOptions->count());
}

void frmOptions::chkAutoRefresh_Click() {
    const bool on = ui_->chkAutoRefresh->isChecked();
    ui_->txtRefreshInterval->setEnabled(on);
    ui_->sliRefreshInterval->setEnabled(on);
}

void frmOptions::chkKeepDeleted_Click() {
    ui_->txtKeepDeletedDays->setEnabled(ui_->chkKeepDeleted->isChecked());
}

// The bounds of the slider are the only ones; what the text says beyond them, the slider says from then on.
void frmOptions::txtRefreshInterval_Validate() {
    ui_->sliRefreshInterval->setValue(WholeSeconds(ui_->txtRefreshInterval->text()));
    sliRefreshInterval_Change(ui_->sliRefreshInterval->value());
}

void frmOptions::sliRefreshInterval_Change(int seconds) {
    ui_->txtRefreshInterval->setText(QString::number(seconds));
}

// A directory is in force as soon as it is selected, so the information shows it at once.
void frmOptions::btnArchive_Click() {
    ui_->txtArchive->setText(CleanseForDisplay(calls_.selectDirectory(0)));
    DropDetection();
    ShowInformation();
}

void frmOptions::btnTolerate_Click() {
    calls_.maintainWhitelist();
}

void frmOptions::cboServer_Change() {
    ui_->btnOwnServer->setEnabled(ui_->cboServer->currentData().toString() == QLatin1String(ownServerKey));
}

void frmOptions::btnOwnServer_Click() {
    DropDetection(); // it would choose another server behind that dialog
    frmOwnServer dialog(files_, pool_, state_.ArchiveDir, Own, this);
    if (dialog.exec() == QDialog::Accepted) {
        Own = dialog.Described();
    }
}

// A button that is disabled would give the focus to the next one.
void frmOptions::btnDetect_Click() {
    if (detection_) {
        return;
    }
    TellDetected(tr("Looking at the newest messages..."));
    detection_ = std::make_unique<ProfileDetection>(
        files_, pool_, state_.ArchiveDir, [this](const ProfileDetection::Result& result) { ShowDetected(result); });
    detection_->Start();
}

// What was found is a proposal, which OK takes over.
void frmOptions::ShowDetected(const ProfileDetection::Result& result) {
    detection_.reset();
    if (!result.error.isEmpty()) {
        TellDetected(tr("The archive cannot be read: %1").arg(CleanseForDisplay(result.error)));
    } else if (result.looked == 0) {
        TellDetected(tr("The archive holds no messages."));
    } else if (result.profile == nullptr) {
        TellDetected(tr("The newest messages (%n) do not say which server has blocked them.", nullptr, result.looked));
    } else {
        const int place = ui_->cboServer->findData(result.profile->key);
        ui_->cboServer->setCurrentIndex(place);
        TellDetected(tr("Found in %1 of the newest messages (%n): %2", nullptr, result.looked)
                         .arg(result.marked)
                         .arg(ui_->cboServer->itemText(place)));
    }
}

// Assistive tools read it with the button.
void frmOptions::TellDetected(const QString& text) {
    ui_->lblDetected->setText(text);
    ui_->btnDetect->setAccessibleDescription(text);
}

// The user knows better, or it is about another archive.
void frmOptions::DropDetection() {
    detection_.reset();
    TellDetected(QString());
}

/// Whether it is another one than before, or described in another way.
bool frmOptions::TakeServer() {
    const ServerProfile& before = ChosenProfile(state_);
    const QString chosen = ui_->cboServer->currentData().toString();
    if (chosen != before.key) {
        state_.ServerProfile = chosen;
    }
    state_.Own = Own;
    return &ChosenProfile(state_) != &before;
}

void frmOptions::TakeDelivery() {
    ui_->delivery->TakeSettings(state_);
    if (const std::optional<QString> password = ui_->delivery->EnteredPassword()) {
        calls_.keepPassword(*password);
    }
}

void frmOptions::btnPickup_Click() {
    const QString folder = calls_.selectDirectory(1);
    ui_->txtPickup->setText(CleanseForDisplay(folder));
    ui_->delivery->ShowPickup(folder);
    ShowInformation();
}

void frmOptions::cmdOK_Click() {
    if (ui_->txtRefreshInterval->isModified()) {
        txtRefreshInterval_Validate(); // pressed without having got the focus
    }
    if (QWidget* incomplete = ui_->delivery->IncompleteField()) {
        ui_->tbsOptions->setCurrentWidget(ui_->fraOptions6);
        incomplete->setFocus();
        return;
    }
    TakeDelivery();
    const bool changed = TakeServer() || ChosenFilter != state_.FilterDays;
    state_.FilterDays = ChosenFilter;
    calls_.filterTaken(changed);
    state_.TolerationLevel = ChosenToleration;
    state_.RefreshInterval = static_cast<qint16>(ui_->sliRefreshInterval->value());
    state_.RawBody = ui_->chkRawBody->isChecked() ? 1 : 0;
    state_.AutoRefresh = ui_->chkAutoRefresh->isChecked() ? 1 : 0;
    state_.OutlookExpress = ui_->chkOutlookExpress->isChecked() ? 1 : 0;
    const int keptDays = ui_->chkKeepDeleted->isChecked() ? ui_->txtKeepDeletedDays->Value() : 0;
    state_.KeepDeletedDays = static_cast<qint16>(keptDays);
    state_.HistoryDays = static_cast<qint16>(ui_->txtHistoryDays->Value());
    accept();
}

bool frmOptions::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui_->txtRefreshInterval) {
        return EntersForeignText(*event) || QDialog::eventFilter(watched, event);
    }
    if (event->type() == QEvent::ShowToParent) {
        // A page is enabled before the focus moves into it.
        static_cast<QWidget*>(watched)->setEnabled(true);
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace quellbox
