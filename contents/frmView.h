#pragma once

#include "contents/frmRawPane.h"
#include "platform/SettingsStore.h"

#include <QWidget>

#include <array>
#include <memory>

class QAction;

namespace Ui {
class frmView;
}

namespace quellbox {

/// The viewer window: the whole text of a message file, from its start. Enter, Space and Escape close it.
///
/// It has a page for each form of the text. Which one is shown is chosen with the tabs below, which stay out of sight
/// until the readable text is wanted, or with a key.
class frmView : public QWidget {
    Q_OBJECT

public:
    explicit frmView(SettingsStore& store);
    ~frmView() override;

    /// Shows a message file and its path as the caption, in place of what is shown now.
    void ShowMessage(const QString& path, const QString& text, TextForm form = TextForm::Source);

    /// Fills the page of that form, which was wanted.
    void ShowPage(TextForm form, const QString& text);

    /// Path of the file that is shown.
    const QString& FileName() const { return fileName_; }

Q_SIGNALS:
    /// The user turns to a page whose text is not there yet; ShowPage() takes it.
    void PageWanted(quellbox::TextForm form);

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Page {
        RawPane* pane = nullptr;
        bool isWanted = false; // its text is there, or on its way
    };

    void MakePages();
    void MakeTabs();
    Page& PageOf(TextForm form) { return pages_[form == TextForm::Source ? 0 : 1]; }
    void TurnTo(TextForm form);
    void TurnOver();
    void ShowCurrent();
    void PopUpMenu(RawPane& pane, QPoint place);
    void KeepInside();
    bool rtfRaw_KeyPress(const QKeyEvent& event);

    SettingsStore& store_;
    std::unique_ptr<Ui::frmView> ui_;
    QString fileName_;
    TextForm shown_ = TextForm::Source;
    std::array<Page, 2> pages_;
    QAction* mnuReadable;
};

} // namespace quellbox
