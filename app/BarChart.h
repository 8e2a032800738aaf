#pragma once

#include "messages/PictureSvg.h"

#include <QImage>
#include <QWidget>

namespace quellbox {

/// Shows a picture, of which each bar can be reached and chosen with the mouse, with keys alone, and by assistive
/// tools. Arrow keys, Home and End move; Enter and Space choose, as a click does, and with Ctrl add to what is chosen.
class BarChart : public QWidget {
    Q_OBJECT

public:
    explicit BarChart(QWidget* parent = nullptr);

    /// What has the focus keeps it where it is still there.
    void SetPicture(const OverviewPicture& picture);
    const OverviewPicture& Picture() const { return picture_; }

    /// As laid out for this size; places are in Inside().
    const BarPicture& Shown() const { return shown_; }
    QRectF Inside() const;

    OverviewPlace Current() const { return current_; }
    void SetCurrent(OverviewPlace place);

    /// What is said of a place, as in "2026-06-15, rating 9: 12 messages".
    QString TextOf(OverviewPlace place) const;

    /// The rect of a place in the coordinates of the widget.
    QRect RectOf(OverviewPlace place) const;

    /// The picture for a file, with its title, in the colours and the scale of the window.
    QImage Image() const;
    QByteArray Svg() const;

    /// The user wants the messages at a place.
    void Choose(OverviewPlace place, bool adds);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void Chosen(const MessageGroup& group, bool adds);

    /// The context menu is to pop up: that of the current bar, or of the picture as a whole.
    void MenuWanted(bool isOnBar, const QPoint& screen);

    /// Other bars may have room now.
    void LaidOut();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    void LayOut();
    void TellFocus();
    OverviewPlace PlaceIn(const QPoint& point) const;
    BarPicture ForFile() const;

    OverviewPicture picture_;
    BarPicture shown_;
    OverviewPlace current_;
};

} // namespace quellbox
