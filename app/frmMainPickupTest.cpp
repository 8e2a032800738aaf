#include "app/frmMain.h"

#include "dialogs/PickupTest.h"
#include "mail/DisplayText.h"

#include <QLocale>
#include <QMessageBox>

namespace quellbox {

namespace {

bool ConfirmPickupTest(const QString& pickupDir, QWidget* parent) {
    QString question = PickupTestQuestion();
    question.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QMessageBox box(QMessageBox::Warning, WindowTitle(pickupDir), question, QMessageBox::Yes | QMessageBox::No, parent);
    box.setObjectName(QStringLiteral("msgConfirm"));
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

} // namespace

// The test goes on whatever became of the selection; the question shows the folder that is then in force.
void frmMain::SendPickupTest() {
    if (busy_ || pass_) {
        return;
    }
    if (!IsPickupSetUp(state_.PickupDir, ports_.program.Directory)) {
        panels_.SetInfo(tr("Exchange Pickup Directory not setup yet."));
        mnuOpenFolderSelect_Click(1);
    }
    panels_.SetInfo({});
    const std::function<void(bool)> runTimer = TimerSwitch();
    runTimer(false);
    const bool isConfirmed = ConfirmPickupTest(state_.PickupDir, this);
    runTimer(true);
    if (!isConfirmed || closing_) {
        return;
    }
    const QString moment = GeneralDate(ports_.clock.Now(), QLocale());
    WritePickupTest(ports_.files, state_.UserName, state_.PickupDir, moment);
    panels_.SetInfo(tr("Testmessage send. Verify postmaster mailbox now!"));
}

} // namespace quellbox
