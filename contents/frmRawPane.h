#pragma once

#include <QPlainTextEdit>
#include <QTimer>

namespace quellbox {

/// How the text of a message is written.
enum class TextForm {
    Source,  ///< as it is in the file, in a font in which all characters are equally wide
    Readable ///< for a person to read, in the font of the window
};

/// Shows text that came with a message, as plain text that cannot be changed. The first screens of a long text appear
/// at once; the rest follows while the window stays usable, and is dropped when another text takes its place.
class RawPane : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit RawPane(QWidget* parent = nullptr);

    /// The font of what is not written for reading.
    void SetSourceFont(const QFont& font);

    /// Shows the contents of a message file.
    void ShowFile(const QString& path, const QString& text, TextForm form = TextForm::Source);

    /// Shows a text that is no file.
    void ShowText(const QString& text);

    /// Empties the pane. Hides the slot of the base, which knows nothing of text that is still to come.
    void clear();

    /// Path of the file that is shown; empty when it is another text or none.
    const QString& FileName() const { return fileName_; }

    /// The whole text, also while part of it is still to come.
    const QString& Text() const { return text_; }

    /// True when the control holds the whole text, or as much of it as it ever will: of a text with more than
    /// `mostLines` lines a last line says that the rest is not shown.
    bool IsComplete() const { return position_ == text_.size() || isCut_; }

    /// Each line costs memory and time of its own, even an empty one.
    static constexpr int mostLines = 1'000'000;

    /// Of what is shown.
    TextForm Form() const { return form_; }

Q_SIGNALS:
    /// Another form of text is shown than before.
    void FormChanged(quellbox::TextForm form);

private:
    void Start(const QString& fileName, const QString& text, TextForm form);
    void TakeForm(TextForm form);
    void AppendChunk(qsizetype wanted);
    void CutWhenTooLong();
    void AppendForAWhile();

    TextForm form_ = TextForm::Source;
    QFont fixed_;
    QString fileName_;
    QString text_;
    qsizetype position_ = 0; // how much of the text the control holds
    bool endsLine_ = true;   // that part ends with a line end
    bool isCut_ = false;     // the rest is not shown
    QTimer rest_;
};

} // namespace quellbox
