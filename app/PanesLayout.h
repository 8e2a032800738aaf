#pragma once

#include "app/WindowParts.h"

#include <QObject>
#include <QSplitter>

namespace quellbox {

/// Where the widgets of the main window stand: the toolbars at the left, beside them the list above the contents, with
/// two bars to divide them, and what the View menu shows and hides of it.
class PanesLayout : public QObject {
    Q_OBJECT

public:
    explicit PanesLayout(const WindowParts& parts);

    /// Takes over what is shown and where the bars stand, and stores it back.
    void Restore(const AppState& state);
    void Save(AppState& state) const;

    /// Shows and hides the bars, and fits the columns of the list.
    void LayOut();

    /// Puts a widget above the list, in the same pane.
    void AddAboveList(QWidget& widget);

    /// Divides the room among list, tree and raw text. The window has to have its size.
    void DividePanes();

    void mnuViewContents_Click();
    void mnuViewFormat_Click();
    void mnuViewToolbar_Click();
    void mnuViewStatus_Click();

    /// The View menu opens.
    void mnuView_Click();

private:
    void MakeSplitters();
    void PlaceWidgets();
    bool IsOn(const char* name) const;
    void LetPanesHaveFocus();
    void ShowContentsBand();
    void splWhole_Moved();
    void splBottom_Moved();

    WindowParts parts_;
    QSplitter* splWhole;
    QSplitter* splBottom;
    QWidget* fraList; // the upper pane
    QWidget* clbLeft;
    int listPaneSize_ = 0; // pixels; what "Message contents" restores
    int treePaneSize_ = 0; // pixels; what "Format layout" restores
};

} // namespace quellbox
