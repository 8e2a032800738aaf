#include "settings/frmMessageBox.h"

#include "mail/DisplayText.h"

namespace quellbox {

namespace {

void Fill(QMessageBox& box, QMessageBox::Icon icon, const MessageBoxTexts& texts) {
    box.setIcon(icon);
    box.setObjectName(texts.name);
    box.setWindowTitle(texts.title);
    box.setTextFormat(Qt::PlainText);
    box.setText(WithLineFeeds(texts.text));
}

int Run(QMessageBox::Icon icon, const MessageBoxTexts& texts, QMessageBox::StandardButtons buttons,
        QMessageBox::StandardButton defaultButton, QWidget* parent) {
    QMessageBox box(parent);
    Fill(box, icon, texts);
    box.setStandardButtons(buttons);
    box.setDefaultButton(defaultButton);
    box.setEscapeButton(defaultButton);
    return box.exec();
}

} // namespace

void ShowMessageBox(QMessageBox::Icon icon, const MessageBoxTexts& texts, QWidget* parent) {
    Run(icon, texts, QMessageBox::Ok, QMessageBox::Ok, parent);
}

void ShowBeside(QMessageBox::Icon icon, const MessageBoxTexts& texts, QWidget* parent) {
    auto* box = new QMessageBox(parent);
    Fill(*box, icon, texts);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}

bool AskInMessageBox(QMessageBox::Icon icon, const MessageBoxTexts& texts, QWidget* parent) {
    return Run(icon, texts, QMessageBox::Yes | QMessageBox::No, QMessageBox::No, parent) == QMessageBox::Yes;
}

} // namespace quellbox
