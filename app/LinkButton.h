#pragma once

#include <QAbstractButton>

namespace quellbox {

/// A line of plain text that looks like a link and works like a button, for the keyboard and for assistive tools too.
class LinkButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit LinkButton(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace quellbox
