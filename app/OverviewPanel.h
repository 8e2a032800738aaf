#pragma once

#include "app/BarChart.h"
#include "messages/OverviewTable.h"

#include <QFrame>
#include <QLabel>
#include <QStackedWidget>
#include <QTableView>
#include <QToolButton>

namespace quellbox {

/// One picture with its title, which can be seen as a table as well, copied, and saved. Its controls are named after
/// the picture: chtDays, tblDays, btnDaysTable, btnDaysSave.
class OverviewPanel : public QFrame {
    Q_OBJECT

public:
    OverviewPanel(OverviewKind kind, QWidget* parent);

    void SetPicture(const OverviewPicture& picture);

    /// Whether senders can be tolerated now; if not, `whyNot` says so.
    void OfferTolerating(bool isOffered, const QString& whyNot);

    const BarChart& Chart() const { return *chart_; }
    /// Gives the picture the focus, or its table.
    void TakeFocus() { stack_->currentWidget()->setFocus(); }

    /// What has the focus last when the tab key goes through it.
    QWidget& LastControl() const { return *btnSave_; }

    const OverviewTable& Table() const { return table_; }

Q_SIGNALS:
    void Chosen(const MessageGroup& group, bool adds);
    void SaveClick(OverviewKind kind);

    /// The senders of these messages are to be tolerated.
    void TolerateClick(const MessageGroup& group);

private:
    void MakeHead();
    void MakeTable();
    void AddActions();
    QAction* AddAction(const char* name, const QString& text);
    void ShowTitle();
    void ShowTable(bool isTable);
    void ChooseRow(bool adds);
    void ChooseCurrent(bool adds);
    void TolerateCurrent();
    OverviewPlace Current() const;
    void PopUpMenu(bool isOnBar, const QPoint& screen);
    qint64 GroupsShown() const;
    void Copy();

    OverviewKind kind_;
    OverviewTable table_;
    QLabel* lblTitle_;
    QToolButton* btnTable_;
    QToolButton* btnSave_;
    QStackedWidget* stack_;
    BarChart* chart_;
    QTableView* view_;
    QAction* tolerate_ = nullptr;
    QList<QAction*> wholeActions_; // that are for the picture, not for a bar
};

} // namespace quellbox
