#pragma once

#include <QLabel>

namespace quellbox {

/// A label for plain text that may hold a long path: it breaks lines inside a word that is wider than the label, where
/// a plain label would grow wider than the screen.
class WrapLabel : public QLabel {
    Q_OBJECT

public:
    explicit WrapLabel(QWidget* parent = nullptr);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quellbox
