#include "app/frmAbout.h"

#include "app/PlainToolTip.h"
#include "ui_frmAbout.h"

#include <QIcon>
#include <QPushButton>

namespace quellbox {

namespace {

constexpr int logoSize = 64; // pixels

} // namespace

frmAbout::frmAbout(const ProgramInfo& program, const FileSystem& files, const Shell& shell, QWidget* parent)
    : QDialog(parent), shell_(shell), ui_(new Ui::frmAbout) {
    ui_->setupUi(this);
    setWindowTitle(tr("About %1").arg(program.Title));
    ShowLogo();
    ui_->lblCompany->setText(program.CompanyName);
    ui_->lblApplication->setText(tr("%1 by %2\n\n%3").arg(program.ProductName, program.CompanyName, program.Comments));
    ui_->lblVersionInfo->setText(
        tr("Version %1 - Build %2\n\n%3\n%4")
            .arg(program.Version(), BuildDate(files, program), program.FileDescription, program.LegalCopyright));
    ShowLink(*ui_->hypLinks0, *ui_->lblLinks0, program.WebSite, program.WebSite);
    ShowLink(*ui_->hypLinks1, *ui_->lblLinks1, program.SupportAddress, program.SupportLink());
    ShowLink(*ui_->hypLinks2, *ui_->lblLinks2, program.DownloadPage, program.DownloadPage);
    ShowLink(*ui_->hypLinks3, *ui_->lblLinks3, program.FeedbackPage(), program.FeedbackPage());
    connect(ui_->btnOK, &QPushButton::clicked, this, &QDialog::accept);
    ui_->btnOK->setFocus();
}

frmAbout::~frmAbout() = default;

void frmAbout::ShowLink(LinkButton& link, const QLabel& heading, QString text, const QString& target) {
    link.setToolTip(PlainToolTip(target));
    link.setAccessibleName(heading.text() + QLatin1Char(' ') + text);
    link.setText(text.replace(QLatin1Char('&'), QLatin1String("&&")));
    connect(&link, &QAbstractButton::clicked, this, [this, target] { shell_.Open(target); });
}

void frmAbout::ShowLogo() {
    const QIcon logo(QStringLiteral(":/icons/quellbox.svg"));
    ui_->imgLogo->setPixmap(logo.pixmap(QSize(logoSize, logoSize), devicePixelRatioF()));
}

} // namespace quellbox
