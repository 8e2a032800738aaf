#include "dialogs/frmCleansing.h"

#include "dialogs/CleansingSum.h"
#include "dialogs/CleansingTexts.h"
#include "mail/DisplayText.h"
#include "settings/ChosenProfile.h"
#include "ui_frmCleansing.h"

#include <QIcon>

#include <algorithm>
#include <array>
#include <chrono>

namespace quellbox {

namespace {

constexpr int pictureSize = 48; // pixels

constexpr std::array<qint16, 4> choices{0, 1, 2, 7}; // in days

QString OptionName(qint16 index) {
    return QStringLiteral("optDays%1").arg(index);
}

/// Until the next day begins, and never so short that a clock that stands still would keep the program busy.
std::chrono::milliseconds UntilMidnight(const QDateTime& now) {
    constexpr qint64 shortest = 100;
    return std::chrono::milliseconds(std::max(shortest, now.msecsTo(now.date().addDays(1).startOfDay())));
}

// The folder as the dialog names it: in one line of plain characters, and never so long that the buttons are pushed off
// the screen.
QString ShownFolder(const QString& folder) {
    constexpr qsizetype longest = 500;
    const QString text = CleanseForDisplay(folder);
    return text.size() <= longest ? text : text.left(longest / 2) + QChar(0x2026) + text.right(longest / 2);
}

} // namespace

frmCleansing::frmCleansing(const CleansingPorts& ports, AppState& state, QWidget* parent)
    : QDialog(parent), clock_(ports.clock), state_(state), preview_(ports.files, ports.pool),
      ui_(new Ui::frmCleansing) {
    ui_->setupUi(this);
    state_.CleansingDays = -1;
    const QIcon picture(QStringLiteral(":/icons/cleansing.svg"));
    ui_->imgCleansing->setPixmap(picture.pixmap(QSize(pictureSize, pictureSize), devicePixelRatioF()));
    ui_->lblInfo->setText(WithLineFeeds(CleansingIntroduction(ShownFolder(state_.ArchiveDir))));
    // What is counted may need a second line, which must not move the buttons when it comes.
    ui_->lblPreview->setText(QStringLiteral("\n"));
    ui_->lblPreview->setMinimumHeight(ui_->lblPreview->sizeHint().height());
    ui_->lblPreview->clear();
    for (const qint16 index : choices) {
        auto* option = findChild<QRadioButton*>(OptionName(index));
        option->setProperty("Tag", CleansingOptionTag(index));
        // Whatever chooses an option counts as a click on it.
        connect(option, &QRadioButton::toggled, this, [this, index](bool chosen) {
            if (chosen) {
                optDays_Click(index);
            }
        });
    }
    connect(ui_->btnOK, &QPushButton::clicked, this, &frmCleansing::accept);
    connect(ui_->btnCancel, &QPushButton::clicked, this, &frmCleansing::reject);
    connect(&preview_, &CleansingPreview::Ended, this, &frmCleansing::ShowPreview);
    midnight_.setSingleShot(true);
    midnight_.setTimerType(Qt::PreciseTimer); // others are minutes late or early
    midnight_.callOnTimeout(this, &frmCleansing::ShowPreview);
    preview_.Start(state_.ArchiveDir, ChosenProfile(state_).places);
    ShowPreview();
}

frmCleansing::~frmCleansing() = default;

void frmCleansing::optDays_Click(qint16 index) {
    state_.CleansingDays = index;
    // A shorter text must not move the buttons under the pointer.
    ui_->lblInfo->setMinimumHeight(ui_->lblInfo->height());
    ui_->lblInfo->setText(WithLineFeeds(CleansingQuestion(ShownFolder(state_.ArchiveDir), index)));
    ui_->btnOK->setEnabled(true);
    ShowPreview();
}

QString frmCleansing::PreviewOf(qint16 index) const {
    if (!preview_.HasEnded()) {
        return tr("Counting...");
    }
    if (!preview_.Error().isEmpty()) {
        return tr("The archive cannot be read: %1").arg(CleanseForDisplay(preview_.Error()));
    }
    return CleansingSumText(SumOfCleansing(preview_.Messages(), index, clock_.Now().date()));
}

// Assistive tools read with each choice what it would remove, and hear it again when that changes.
void frmCleansing::ShowPreview() {
    for (const qint16 index : choices) {
        auto* option = findChild<QRadioButton*>(OptionName(index));
        const QString text = PreviewOf(index);
        option->setAccessibleDescription(text);
        if (option->isChecked() || !preview_.Error().isEmpty()) {
            ui_->lblPreview->setText(text);
        }
    }
    midnight_.start(UntilMidnight(clock_.Now()));
}

void frmCleansing::accept() {
    state_.CleansingConfirmed = true;
    QDialog::accept();
}

// Whatever closes the dialog but OK takes a confirmation back.
void frmCleansing::reject() {
    state_.CleansingConfirmed = false;
    QDialog::reject();
}

} // namespace quellbox
