#pragma once

#include "app/MessageListView.h"
#include "app/frmMain.h"

#include <QTimer>

#include <random>
#include <set>

namespace quellbox::soak {

/// Acts in the window at random, with keys and clicks.
class User {
public:
    User(frmMain& window, unsigned seed);

    void GoOn() { next_.start(); }
    void Pause() { next_.stop(); }

    /// The numbers of the messages that were selected when the user deleted: these may be gone.
    const std::set<int>& Deleted() const { return deleted_; }
    int Actions() const { return actions_; }

private:
    void Act();
    void ClickRow(Qt::KeyboardModifiers modifiers);
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void Delete();
    int Random(int below);

    frmMain& window_;
    MessageListView& list_;
    std::mt19937 random_;
    QTimer next_;
    std::set<int> deleted_;
    int actions_ = 0;
};

} // namespace quellbox::soak
