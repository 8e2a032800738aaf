#pragma once

#include "settings/AppState.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace Ui {
class frmDeliveryFields;
}

namespace quellbox {

/// The controls for the way on which messages are unblocked: which one it is, and what it needs to know.
class DeliveryFields : public QWidget {
    Q_OBJECT

public:
    explicit DeliveryFields(QWidget* parent = nullptr);
    ~DeliveryFields() override;

    /// Shows what is set. The password stays where it is kept.
    void ShowSettings(const AppState& state);

    /// Null when the chosen way has what it needs; else the field in which something is missing, and says what.
    QWidget* IncompleteField();

    /// Shows which folder is set as the pickup directory.
    void ShowPickup(const QString& folder);

    void TakeSettings(AppState& state) const;

    /// The password that was entered; nothing when that field was left alone.
    std::optional<QString> EnteredPassword() const;

private:
    void FillChoices();
    void cboDelivery_Change();
    void DescribeWay();
    QWidget* Refuse(QWidget* field, const QString& why);

    std::unique_ptr<Ui::frmDeliveryFields> ui_;
    QString pickup_;
};

} // namespace quellbox
