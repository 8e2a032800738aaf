#include "tests/soak/User.h"

#include "tests/soak/Messages.h"

#include <QHeaderView>
#include <QtTest/QTest>

namespace quellbox::soak {

User::User(frmMain& window, unsigned seed)
    : window_(window), list_(*window.findChild<MessageListView*>(QStringLiteral("lvwMessages"))), random_(seed) {
    next_.setInterval(80);
    next_.callOnTimeout([this] { Act(); });
}

int User::Random(int below) {
    return std::uniform_int_distribution<int>(0, below - 1)(random_);
}

void User::Act() {
    ++actions_;
    next_.setInterval(20 + Random(200));
    constexpr std::array moves{Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_Home, Qt::Key_End};
    switch (Random(20)) {
    case 0:
    case 1:
    case 2:
        Delete();
        break;
    case 3:
    case 4:
    case 5:
        Key(Qt::Key_U, Qt::ControlModifier);
        break;
    case 6:
        Key(Qt::Key_F5);
        break;
    case 7:
    case 8:
        Key(Qt::Key_Escape); // and the ticks go on
        break;
    case 9:
        ClickRow(Qt::ControlModifier);
        break;
    case 10:
    case 11:
        ClickRow(Qt::ShiftModifier);
        break;
    case 12:
        Key(moves.at(static_cast<size_t>(Random(moves.size()))), Random(2) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
        break;
    case 13:
        Random(4) == 0 ? Key(Qt::Key_B, Qt::ControlModifier)
                       : QTest::mouseClick(list_.header()->viewport(), Qt::LeftButton, {},
                                           QPoint(Random(list_.header()->width()), 5));
        break;
    case 14:
        window_.resize(500 + Random(600), 400 + Random(400));
        break;
    default:
        ClickRow({});
        break;
    }
}

void User::ClickRow(Qt::KeyboardModifiers modifiers) {
    const QRect inside = list_.viewport()->rect();
    QTest::mouseClick(list_.viewport(), Qt::LeftButton, modifiers, QPoint(20, Random(std::max(inside.height(), 1))));
}

void User::Key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&list_, key, modifiers);
}

void User::Delete() {
    for (const RowRange& range : list_.SelectedRanges()) {
        for (int row = range.first; row <= range.last; ++row) {
            deleted_.insert(NumberOf(window_.Messages().Row(row).Key()));
        }
    }
    Key(Qt::Key_Delete);
}

} // namespace quellbox::soak
