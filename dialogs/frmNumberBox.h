#pragma once

#include <QLineEdit>

namespace quellbox {

/// A text box for a whole number within bounds. Only digits can be typed. What is pasted is read as a number, as far as
/// it is one, when the box is left; what lies beyond the bounds becomes the nearest of them.
class NumberBox : public QLineEdit {
    Q_OBJECT

public:
    explicit NumberBox(QWidget* parent = nullptr);

    void SetBounds(int least, int most);

    /// Shows a number, or the bound that is nearest to it.
    void SetValue(int value);

    /// The number that the box stands for, also before it is left.
    int Value() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    int least_ = 0;
    int most_ = 0;
};

} // namespace quellbox
