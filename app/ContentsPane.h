#pragma once

#include "app/StructureTreeView.h"
#include "contents/MessageLoader.h"
#include "contents/frmRawPane.h"
#include "contents/frmView.h"
#include "settings/AppState.h"
#include "settings/ChosenProfile.h"

#include <QPointer>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace quellbox {

/// What the contents pane works with; all of it outlives the pane.
struct ContentsPorts {
    const FileSystem& files;
    SettingsStore& store; ///< keeps where the viewer stands
    WorkPool& pool;
    const AppState& state;
    /// How long the message before may still be shown, when another one is wanted that is not there yet.
    std::chrono::milliseconds patience;
};

/// Shows one message, or nothing: its structure, its raw text and, when it is asked for, the viewer. Files are named
/// by path.
///
/// A message that is to be shown comes when it has been read. Where that takes longer than `patience`, nothing is shown
/// until then, least of all what belongs to another message.
class ContentsPane : public QObject {
    Q_OBJECT

public:
    /// The widgets get `parent`, and their places in it from whoever lays it out.
    ContentsPane(const ContentsPorts& ports, QWidget* parent);
    ~ContentsPane() override;

    QTreeWidget& Tree() { return *trvMessage; }
    RawPane& Raw() { return *rtfRaw; }

    /// Shows a message, unless it is shown or on its way already. One that has gone empties the panes without a word.
    void Show(const QString& path);

    /// Shows the message that takes the place of one that is no more.
    void ShowNext(const QString& path);

    /// Shows the text of a message and leaves the structure as it is.
    void ShowText(const QString& path);

    /// Shows the text of a message in the viewer too.
    void ShowInViewer(const QString& path);

    /// Reads the header fields of a message beside everything else; HeadersRead() tells them. Failures are dropped.
    void ReadHeaders(const QString& path);

    /// Shows the message again that is shown, after another form of its text has been chosen.
    void ShowAnew();

    /// Shows nothing, and forgets the message that is being read.
    void Clear();

    /// The same for the raw text only.
    void ClearText();

    void CloseViewer();

    /// Closes the viewer for good: what is being read no longer comes.
    void Close();

    /// Forgets what is being read. Readers that are stuck hold up nothing that is asked for later.
    void Forget();

    /// The two buttons are in this state from now on.
    void SetToggles(ContentsToggles pressed);

    /// The button with that key was pressed or released.
    void tlbContents_ButtonClick(const QString& key, bool pressed);

    /// True while something that was asked for is still to be read.
    bool IsLoading() const { return loader_->IsBusy() || pageLoader_->IsBusy(); }

Q_SIGNALS:
    /// The user has seen this message, or that it cannot be read.
    void MessageSeen(const QString& path);

    void HeadersRead(const QString& path, const HeaderFields& headers);

    /// A node that stands for the whole message was clicked.
    void WholeMessageWanted();

    /// An error ended the reaction to an event; the text is for the user.
    void Failed(const QString& text);

private:
    /// What is done with a message that is being read.
    struct Loading {
        QString path;
        bool ifExists = false;   // a file that has gone empties the panes without a word
        bool text = false;       // to be shown in rtfRaw
        bool structure = false;  // to be shown in trvMessage; the message is seen then
        bool forViewer = false;  // the text is to be shown in the viewer too
        bool takesPlace = false; // without its text, rtfRaw is empty
        TextForm form = TextForm::Source;
    };

    template <class Handler>
    void Guarded(Handler handler);
    void MakeTree(QWidget* parent);
    void MakeRaw(QWidget* parent);
    void MakeLoaders();
    const ServerProfile& Profile() const { return ChosenProfile(ports_.state); }
    void Load(Loading wanted);
    void CancelLoading();
    void ClearWhatIsLate();
    void TakeError(const QString& text);
    void TakeAnswer(const MessageAnswer& answer);
    void TakeText(const MessageAnswer& answer, const Loading& wanted);
    void TakeFailure(const MessageAnswer& answer, const Loading& wanted);
    void trvMessage_NodeClick(bool hasChildren, const QString& text, const QString& tag);
    void NameRaw(TextForm form);
    TextForm WantedForm() const { return ports_.state.ReadableText ? TextForm::Readable : TextForm::Source; }
    MessageRequest RequestOf(const QString& path, TextForm form) const;
    void ShowViewer();
    void LoadPage(TextForm form);

    ContentsPorts ports_;
    ContentsToggles toggles_;
    StructureTreeView* trvMessage = nullptr;
    RawPane* rtfRaw = nullptr;
    QPointer<frmView> view_;
    std::unique_ptr<MessageLoader> loader_;
    std::optional<TextForm> page_;              // which is on its way
    std::unique_ptr<MessageLoader> pageLoader_; // of the viewer, when it turns to its other page
    QTimer late_;
    std::optional<Loading> loading_; // of the message that is being read, what has not come yet
};

} // namespace quellbox
