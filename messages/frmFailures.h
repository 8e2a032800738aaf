#pragma once

#include "messages/FailureList.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmFailures;
}

namespace quellbox {

/// The window that shows what failed in the last action, why, and what to do about it.
class frmFailures : public QDialog {
    Q_OBJECT

public:
    frmFailures(const FailureList& failures, QWidget* parent);
    ~frmFailures() override;

private:
    void ShowTexts(const std::vector<FailureText>& texts);
    void btnCopy_Click();

    std::unique_ptr<Ui::frmFailures> ui_;
};

} // namespace quellbox
