#pragma once

#include "platform/SettingsStore.h"
#include "settings/AppState.h"
#include "whitelist/WhitelistRules.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmTolerate;
}

namespace quellbox {

/// The mode words of the whitelist dialog, and its result after OK.
namespace ToleranceWord {
inline constexpr QLatin1String tolerate("TOLERATE");   ///< tolerate the sender of one message
inline constexpr QLatin1String whitelist("WHITELIST"); ///< maintain the list
inline constexpr QLatin1String ok("OK");
} // namespace ToleranceWord

/// The dialog that maintains the list of tolerated senders. OK stores the list; OK and Cancel, but no other way of
/// closing it, set `AppState::ToleranceResult`.
class frmTolerate : public QDialog {
    Q_OBJECT

public:
    frmTolerate(SettingsStore& store, AppState& state, QWidget* parent);
    ~frmTolerate() override;

    void SetMode(const QString& modeWord);

    /// Fills the entry field, which validates it.
    void SetSender(const QString& sender);

    void SetStatus(const QString& text);

    /// Sets what is enabled, whether the list is locked, and the default button.
    void UpdateWhitelistButtons();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void cboTolerate_Change();
    void cboTolerate_Click();
    void btnAdd_Click();
    void btnRemove_Click();
    void btnAll_Click();
    void btnCancel_Click();
    void btnOK_Click();
    void Tell(const char* name, const QString& text);
    bool ConfirmDomain(const QString& domainUpper);
    void ShowEntries();

    SettingsStore& store_;
    AppState& state_;
    std::unique_ptr<Ui::frmTolerate> ui_;
    Whitelist entries_;
    QString modeWord_;
    bool TolerateMode = false;
};

} // namespace quellbox
