#pragma once

#include <QObject>
#include <QString>

namespace quellbox {

/// Text and tool tip of one panel of the status bar.
struct StatusPanel {
    QString text;
    QString toolTip;

    bool operator==(const StatusPanel&) const = default;
};

/// What the status bar shows, written by any stage and painted by the bar.
class StatusPanels : public QObject {
    Q_OBJECT

public:
    const StatusPanel& Info() const { return info_; }
    const StatusPanel& Size() const { return size_; }
    const StatusPanel& Count() const { return count_; }

    void SetInfo(const QString& text);
    void SetSize(const QString& text, const QString& toolTip);
    void SetCount(const QString& text);

Q_SIGNALS:
    /// A panel has another text or tool tip than before.
    void Changed();

private:
    void Set(StatusPanel& panel, const StatusPanel& value);

    StatusPanel info_;
    StatusPanel size_;
    StatusPanel count_;
};

} // namespace quellbox
