#include "dialogs/frmNumberBox.h"

#include "settings/TextConversion.h"

#include <QInputMethodEvent>
#include <QKeyEvent>

#include <algorithm>

namespace quellbox {

namespace {

bool IsOfDigits(const QString& text) {
    return std::all_of(text.begin(), text.end(),
                       [](QChar character) { return character >= QLatin1Char('0') && character <= QLatin1Char('9'); });
}

} // namespace

NumberBox::NumberBox(QWidget* parent) : QLineEdit(parent) {
    connect(this, &QLineEdit::editingFinished, this, [this] { SetValue(Value()); });
}

void NumberBox::SetBounds(int least, int most) {
    least_ = least;
    most_ = most;
    SetValue(Value());
}

void NumberBox::SetValue(int value) {
    setText(QString::number(std::clamp(value, least_, most_)));
}

int NumberBox::Value() const {
    return static_cast<int>(std::clamp(LeadingWholeNumber(text()), double(least_), double(most_)));
}

// Keys without a character of their own, and those with Ctrl or Alt, are commands.
void NumberBox::keyPressEvent(QKeyEvent* event) {
    const QString text = event->text();
    if (text.isEmpty() || !text.front().isPrint() || IsOfDigits(text)) {
        QLineEdit::keyPressEvent(event);
    }
}

void NumberBox::inputMethodEvent(QInputMethodEvent* event) {
    if (IsOfDigits(event->commitString()) && IsOfDigits(event->preeditString())) {
        QLineEdit::inputMethodEvent(event);
    }
}

} // namespace quellbox
