#pragma once

#include "archive/OwnServerTrial.h"

#include <QDialog>

#include <memory>

class QLineEdit;

namespace Ui {
class frmOwnServer;
}

namespace quellbox {

/// Lets the user describe a server of which no profile is known, and try that on the newest message of the archive.
class frmOwnServer : public QDialog {
    Q_OBJECT

public:
    frmOwnServer(const FileSystem& files, WorkPool& pool, const Folder& archive, const OwnServer& server,
                 QWidget* parent);
    ~frmOwnServer() override;

    /// The server as it is described now. Once the dialog was accepted, everything in it can be used.
    OwnServer Described() const;

private:
    void ShowServer(const OwnServer& server);
    void ConnectControls();
    void cboRatingForm_Change();
    void Changed();
    bool IsUsable();
    bool Refuse(QWidget* field, const QString& why);
    void AcceptAll();
    bool RefusesName(QLineEdit* field, const QString& name);
    bool RefusesRating();
    bool RefusesRatingText();
    bool RefusesNames(QLineEdit* field, bool isEnvelope);
    void btnTry_Click();
    void ShowFound(const OwnServerTrial::Result& result);
    void TellFound(const QString& text);
    void GrowToText();
    void btnOK_Click();

    const FileSystem& files_;
    WorkPool& pool_;
    const Folder archive_;
    std::unique_ptr<Ui::frmOwnServer> ui_;
    std::unique_ptr<OwnServerTrial> trial_;
};

} // namespace quellbox
