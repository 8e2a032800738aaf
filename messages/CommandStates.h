#pragma once

#include "messages/Activity.h"

namespace quellbox {

/// What decides which commands can be used.
struct CommandConditions {
    Activity activity = Activity::Idle;
    int rows = 0;              ///< in the list, and in sight
    int selected = 0;          ///< of them
    int tolerationLevel = 0;   ///< as AppState has it
    int filterDays = 0;        ///< as AppState has it
    bool offersView = false;   ///< exactly one row was selected when the mouse button went down last
    bool undoable = false;     ///< an action can be taken back
    bool keepsDeleted = false; ///< deleted messages are kept, so that the user counts on taking back
    bool narrows = false;      ///< the field is open that narrows the list, which the Edit menu closes
};

/// Which commands can be used.
struct CommandStates {
    bool edit = false;         ///< the Edit menu
    bool exportList = false;   ///< Export List
    bool list = false;         ///< what changes the list, its selection or its marks, settings, folders and dialogs
    bool onSelected = false;   ///< what acts on the selected messages: delete, unblock, and the contents' buttons
    bool view = false;         ///< View, which is for one message
    bool tolerate = false;     ///< Tolerate, by button or key
    bool tolerateMenu = false; ///< Tolerate in the menu of the list
    bool find = false;         ///< Find, by button
    bool whitelist = false;    ///< the button "whitelist"
    bool refresh = false;      ///< Refresh, and bulk mode, which leads to one. It waits for the present one
    bool undo = false;         ///< Undo
    bool filter = false;       ///< the button "filter": the same, but without days to filter by it asks for them first

    bool operator==(const CommandStates&) const = default;
};

/// The one place that decides it.
CommandStates ComputeCommandStates(const CommandConditions& now);

} // namespace quellbox
