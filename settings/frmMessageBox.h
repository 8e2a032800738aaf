#pragma once

#include <QMessageBox>

namespace quellbox {

/// What a message box says. Its texts may hold what others have written, and are shown as they are: never as markup.
struct MessageBoxTexts {
    QString name; ///< the object name, by which tests and assistive tools find the box
    QString title;
    QString text; ///< lines may end with CRLF
};

/// Shows a message box until it is closed. `parent` may be null.
void ShowMessageBox(QMessageBox::Icon icon, const MessageBoxTexts& texts, QWidget* parent);

/// Shows a message box beside the other windows, which go on as if it were not there. `parent` owns it.
void ShowBeside(QMessageBox::Icon icon, const MessageBoxTexts& texts, QWidget* parent);

/// Asks a question; true when it is answered with Yes. No is the default, also for Escape.
bool AskInMessageBox(QMessageBox::Icon icon, const MessageBoxTexts& texts, QWidget* parent);

} // namespace quellbox
