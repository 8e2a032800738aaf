#pragma once

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QTimer>

#include <functional>

namespace quellbox {

/// Acts once in the next active modal dialog of a name, which runs an event loop of its own, and closes it afterwards.
class DialogVisit {
public:
    DialogVisit(const char* objectName, std::function<void(QDialog&)> act) {
        poll_.callOnTimeout([this, name = QLatin1String(objectName), act = std::move(act)] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr || dialog->objectName() != name || QApplication::activeWindow() != dialog) {
                return;
            }
            poll_.stop();
            happened_ = true;
            const QPointer<QDialog> stillThere(dialog);
            act(*dialog);
            if (stillThere != nullptr) {
                stillThere->close();
            }
        });
        poll_.start(1);
    }

    /// True when there was such a dialog.
    bool Happened() const { return happened_; }

private:
    QTimer poll_;
    bool happened_ = false;
};

} // namespace quellbox
