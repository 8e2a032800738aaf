#include "messages/frmFailures.h"

#include "ui_frmFailures.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>

namespace quellbox {

frmFailures::frmFailures(const FailureList& failures, QWidget* parent) : QDialog(parent), ui_(new Ui::frmFailures) {
    ui_->setupUi(this);
    resize(size().boundedTo(screen()->availableSize() * 9 / 10)); // also where everything is twice as large
    ShowTexts(failures.Texts(QLocale()));
    connect(ui_->btnCopy, &QPushButton::clicked, this, &frmFailures::btnCopy_Click);
    connect(ui_->btnClose, &QPushButton::clicked, this, &frmFailures::accept);
}

frmFailures::~frmFailures() = default;

void frmFailures::ShowTexts(const std::vector<FailureText>& texts) {
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<qsizetype>(texts.size()));
    for (const FailureText& text : texts) {
        items.append(new QTreeWidgetItem({text.message, text.reason, text.advice}));
    }
    QTreeWidget& list = *ui_->lvwFailures;
    list.addTopLevelItems(items);
    list.setCurrentItem(list.topLevelItem(0));
    list.header()->setResizeContentsPrecision(100); // rows; there may be thousands
    for (int column = 0; column < list.columnCount(); ++column) {
        list.resizeColumnToContents(column);
    }
}

void frmFailures::btnCopy_Click() {
    QString text;
    for (int row = 0; row < ui_->lvwFailures->topLevelItemCount(); ++row) {
        const QTreeWidgetItem& item = *ui_->lvwFailures->topLevelItem(row);
        text += item.text(0) + QLatin1Char('\t') + item.text(1) + QLatin1Char('\t') + item.text(2) + QLatin1Char('\n');
    }
    QGuiApplication::clipboard()->setText(text);
}

} // namespace quellbox
