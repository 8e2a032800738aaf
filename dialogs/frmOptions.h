#pragma once

#include "archive/ProfileDetection.h"
#include "platform/FileSystem.h"
#include "settings/AppState.h"
#include "settings/ProgramInfo.h"

#include <QDialog>
#include <QHash>
#include <QIcon>

#include <functional>
#include <memory>

namespace Ui {
class frmOptions;
}

namespace quellbox {

struct InformationNode;

/// What the options dialog asks of whoever opens it.
struct OptionsCalls {
    /// OK took over the day filter and the server, one of which is another one than before, or none.
    std::function<void(bool changed)> filterTaken;
    /// Lets the user choose the archive (0) or pickup (1) directory, stores it and returns the one in force.
    std::function<QString(qint16)> selectDirectory;
    /// Opens the whitelist dialog above this one.
    std::function<void()> maintainWhitelist;
    /// OK took over the way of delivery, with a new password for the mail server.
    std::function<void(const QString& password)> keepPassword;
};

/// The dialog that edits the settings in memory. OK takes them over; directories chosen stay even after Cancel.
/// It opens on the tab `AppState::OptionsTab`, which follows the tab that is selected.
class frmOptions : public QDialog {
    Q_OBJECT

public:
    frmOptions(const FileSystem& files, WorkPool& pool, const ProgramInfo& program, AppState& state, OptionsCalls calls,
               QWidget* parent);
    ~frmOptions() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void NumberTheButtons();
    void ShowSettings();
    void ShowHistorySettings();
    void ShowServers();
    void ConnectControls();
    void ShowInformation();
    void tbsOptions_Click(int tab);
    void SelectNextTab();
    void chkAutoRefresh_Click();
    void chkKeepDeleted_Click();
    void txtRefreshInterval_Validate();
    void sliRefreshInterval_Change(int seconds);
    void btnArchive_Click();
    void btnPickup_Click();
    void btnTolerate_Click();
    void cboServer_Change();
    void btnOwnServer_Click();
    void btnDetect_Click();
    void ShowDetected(const ProfileDetection::Result& result);
    void TellDetected(const QString& text);
    void DropDetection();
    bool TakeServer();
    void TakeDelivery();
    void cmdOK_Click();

    const FileSystem& files_;
    WorkPool& pool_;
    const ProgramInfo& program_;
    AppState& state_;
    OptionsCalls calls_;
    std::unique_ptr<Ui::frmOptions> ui_;
    std::unique_ptr<ProfileDetection> detection_;
    QHash<QString, QIcon> imlSymbols;
    OwnServer Own;           // what OK takes over
    qint16 ChosenFilter;     // what OK takes over, also when no button stands for it
    qint16 ChosenToleration; // the same
};

} // namespace quellbox
