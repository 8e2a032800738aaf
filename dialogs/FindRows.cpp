#include "dialogs/FindRows.h"

#include <QCoreApplication>
#include <QStringMatcher>

namespace quellbox {
namespace {

bool Occurs(const QStringMatcher& text, const MessageRow& row, int column) {
    const bool hasColumn = column >= 0 && column < ColumnCount;
    return text.indexIn(hasColumn ? row.cells[static_cast<size_t>(column)] : QString()) >= 0;
}

QString MissText(const MessageListModel& model, const AppState& state) {
    const QString caption = model.headerData(state.HeaderField, Qt::Horizontal, Qt::DisplayRole).toString();
    return QCoreApplication::translate("quellbox", "'%1' not found in header field %2")
        .arg(state.FindText, caption.isEmpty() ? QString::number(state.HeaderField) : caption.toUpper());
}

} // namespace

FindResult FindRows(const MessageListModel& model, AppState& state) {
    FindResult found;
    if (state.FindPosition >= model.Count()) {
        state.FindPosition = 0;
    }
    const QStringMatcher text(state.FindText, Qt::CaseInsensitive);
    const int start = state.FindPosition;
    for (int row = start; row < model.Count(); ++row) {
        if (!Occurs(text, model.Row(row), state.HeaderField)) {
            continue;
        }
        found.rows.push_back(row);
        state.FindPosition = row + 1;
        if (state.FindAll == 0) {
            break;
        }
    }
    if (found.rows.empty()) {
        found.missText = MissText(model, state);
        state.FindPosition = 0;
        state.FindText.clear();
    }
    return found;
}

} // namespace quellbox
