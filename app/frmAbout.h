#pragma once

#include "platform/Shell.h"
#include "settings/ProgramInfo.h"

#include <QDialog>
#include <QLabel>

#include <memory>

namespace Ui {
class frmAbout;
}

namespace quellbox {

class LinkButton;

/// The about box: what the program is, its version, and where its maker is found.
class frmAbout : public QDialog {
    Q_OBJECT

public:
    frmAbout(const ProgramInfo& program, const FileSystem& files, const Shell& shell, QWidget* parent);
    ~frmAbout() override;

private:
    void ShowLogo();
    void ShowLink(LinkButton& link, const QLabel& heading, QString text, const QString& target);

    const Shell& shell_;
    std::unique_ptr<Ui::frmAbout> ui_;
};

} // namespace quellbox
