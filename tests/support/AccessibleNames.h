#pragma once

#include <QAccessible>
#include <QStringList>
#include <QWidget>

#include <string>

namespace quellbox {

/// Walks what a window tells assistive tools. Each control that can have the focus must have a name and a role of its
/// own; the result lists those that do not, as object names, and is empty when all is well. Rows and cells are left
/// out: their names are content, which may be empty.
inline std::string NamelessControls(QWidget& window, int* focusable = nullptr) {
    QStringList nameless;
    int seen = 0;
    const auto walk = [&](const auto& self, QAccessibleInterface* control) -> void {
        if (control == nullptr || control->object() == nullptr) {
            return;
        }
        const auto* widget = qobject_cast<const QWidget*>(control->object());
        const bool passesOn = widget != nullptr && widget->focusProxy() != nullptr; // its proxy is walked as well
        if (control->state().focusable && !passesOn && widget != &window) {
            ++seen;
            const bool hasRole = control->role() != QAccessible::NoRole && control->role() != QAccessible::Client;
            if (!hasRole || control->text(QAccessible::Name).trimmed().isEmpty()) {
                nameless += control->object()->objectName() + QLatin1Char('/') +
                            QLatin1String(control->object()->metaObject()->className());
            }
        }
        for (int index = 0; index < control->childCount(); ++index) {
            self(self, control->child(index));
        }
    };
    walk(walk, QAccessible::queryAccessibleInterface(&window));
    if (focusable != nullptr) {
        *focusable = seen;
    }
    return nameless.join(QLatin1Char(' ')).toStdString();
}

} // namespace quellbox
