#include "dialogs/frmCleansing.h"

#include "dialogs/Cleansing.h"
#include "mail/DisplayText.h"
#include "ui_frmCleansing.h"

#include <QIcon>

namespace quellbox {

namespace {

constexpr int pictureSize = 48; // pixels

// The folder as the dialog names it: in one line of plain characters, and never so long that the buttons are pushed off
// the screen.
QString ShownFolder(const QString& folder) {
    constexpr qsizetype longest = 500;
    const QString text = CleanseForDisplay(folder);
    return text.size() <= longest ? text : text.left(longest / 2) + QChar(0x2026) + text.right(longest / 2);
}

// Line feeds alone are what a label takes for the end of a line.
QString ForLabel(QString text) {
    return text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

} // namespace

frmCleansing::frmCleansing(AppState& state, QWidget* parent)
    : QDialog(parent), state_(state), ui_(new Ui::frmCleansing) {
    ui_->setupUi(this);
    state_.CleansingDays = -1;
    const QIcon picture(QStringLiteral(":/icons/cleansing.svg"));
    ui_->imgCleansing->setPixmap(picture.pixmap(QSize(pictureSize, pictureSize), devicePixelRatioF()));
    ui_->lblInfo->setText(ForLabel(CleansingIntroduction(ShownFolder(state_.ArchiveDir))));
    const std::pair<QRadioButton*, qint16> options[] = {
        {ui_->optDays0, 0}, {ui_->optDays1, 1}, {ui_->optDays2, 2}, {ui_->optDays7, 7}};
    for (const auto& [option, index] : options) {
        option->setProperty("Tag", CleansingOptionTag(index));
        // Whatever chooses an option counts as a click on it.
        connect(option, &QRadioButton::toggled, this, [this, index = index](bool chosen) {
            if (chosen) {
                optDays_Click(index);
            }
        });
    }
    connect(ui_->btnOK, &QPushButton::clicked, this, &frmCleansing::accept);
    connect(ui_->btnCancel, &QPushButton::clicked, this, &frmCleansing::reject);
}

frmCleansing::~frmCleansing() = default;

void frmCleansing::optDays_Click(qint16 index) {
    state_.CleansingDays = index;
    // A shorter text must not move the buttons under the pointer.
    ui_->lblInfo->setMinimumHeight(ui_->lblInfo->height());
    ui_->lblInfo->setText(ForLabel(CleansingQuestion(ShownFolder(state_.ArchiveDir), index)));
    ui_->btnOK->setEnabled(true);
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
