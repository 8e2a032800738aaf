#include "settings/frmMessageBox.h"

#include "mail/DisplayText.h"

namespace quellbox {

namespace {

int Run(QMessageBox::Icon icon, const MessageBoxTexts& texts, QMessageBox::StandardButtons buttons,
        QMessageBox::StandardButton defaultButton, QWidget* parent) {
    QMessageBox box(icon, texts.title, WithLineFeeds(texts.text), buttons, parent);
    box.setObjectName(texts.name);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(defaultButton);
    box.setEscapeButton(defaultButton);
    return box.exec();
}

} // namespace

void ShowMessageBox(QMessageBox::Icon icon, const MessageBoxTexts& texts, QWidget* parent) {
    Run(icon, texts, QMessageBox::Ok, QMessageBox::Ok, parent);
}

bool AskInMessageBox(QMessageBox::Icon icon, const MessageBoxTexts& texts, QWidget* parent) {
    return Run(icon, texts, QMessageBox::Yes | QMessageBox::No, QMessageBox::No, parent) == QMessageBox::Yes;
}

} // namespace quellbox
