#pragma once

#include "messages/CommandStates.h"

#include <QAction>
#include <QHash>
#include <QList>
#include <QMainWindow>
#include <QMenu>
#include <QToolBar>

#include <vector>

namespace quellbox {

/// The commands of the main window: its menus and toolbars, made from tables, and what of them can be used. Whoever
/// does what a command says connects itself to its action.
class MainMenus : public QObject {
    Q_OBJECT

public:
    explicit MainMenus(QMainWindow& window);

    /// The menu or the entry of that name; there has to be one.
    QMenu& Menu(const char* name) const { return *menus_.value(QLatin1String(name)); }
    QAction& Entry(const char* name) const { return *entries_.value(QLatin1String(name)); }

    /// The toolbar button with that key; there has to be one.
    QAction& Button(const char* key) const { return *buttons_.value(QLatin1String(key)); }

    /// True when this entry changes the list, its selection or the settings, for which no job may run.
    bool NeedsIdleness(const char* name) const { return listCommands_.contains(&Entry(name)); }

    QToolBar& Messages() const { return *tlbMessages; }
    QToolBar& Contents() const { return *tlbContents; }

    /// Enables what can be used.
    void Show(const CommandStates& can);

    /// The menus Edit and Actions open: what they offer follows the search and the current row.
    void mnuEdit_Click(bool canFindNext);
    void mnuActions_Click(bool currentRowIsSelected);

private:
    struct Text;
    struct EntryInfo;
    struct MenuInfo;
    struct ButtonInfo;

    static const std::vector<MenuInfo>& MenuTable();
    static const std::vector<ButtonInfo>& ButtonTable();
    QMenu& AddMenu(const MenuInfo& info);
    void AddEntry(QMenu& menu, const EntryInfo& info);
    QToolBar* AddBar(const char* name, const QString& title);
    void AddButton(const ButtonInfo& info);

    QMainWindow& window_;
    QHash<QLatin1String, QMenu*> menus_;
    QHash<QLatin1String, QAction*> entries_;
    QHash<QLatin1String, QAction*> buttons_;
    QList<QAction*> listCommands_; // that can be used only while no job runs
    CommandStates shown_;
    QToolBar* tlbMessages;
    QToolBar* tlbContents;
};

} // namespace quellbox
