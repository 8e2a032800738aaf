#include "contents/frmRawPane.h"

#include "contents/RawText.h"

#include <QElapsedTimer>
#include <QLocale>
#include <QTextCursor>

namespace quellbox {

namespace {

constexpr qsizetype firstChunk = 32 * 1024; // characters; more than any screen holds
constexpr qsizetype laterChunk = 16 * 1024;
constexpr qint64 budgetMs = 8; // of one turn of the event loop

} // namespace

RawPane::RawPane(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont fixed(QStringLiteral("Courier New"));
    fixed.setStyleHint(QFont::Monospace);
    SetSourceFont(fixed);
    rest_.setInterval(0);
    connect(&rest_, &QTimer::timeout, this, &RawPane::AppendForAWhile);
}

void RawPane::SetSourceFont(const QFont& font) {
    fixed_ = font;
    setFont(form_ == TextForm::Source ? fixed_ : QFont());
}

void RawPane::ShowFile(const QString& path, const QString& text, TextForm form) {
    Start(path, text, form);
}

void RawPane::ShowText(const QString& text) {
    Start({}, text, TextForm::Source);
}

void RawPane::clear() {
    Start({}, {}, form_);
}

// An empty document is laid out anew at once.
void RawPane::TakeForm(TextForm form) {
    if (form == form_) {
        return;
    }
    form_ = form;
    SetSourceFont(fixed_);
    Q_EMIT FormChanged(form_);
}

void RawPane::Start(const QString& fileName, const QString& text, TextForm form) {
    rest_.stop();
    fileName_ = fileName;
    text_ = text;
    position_ = 0;
    endsLine_ = true;
    isCut_ = false;
    QPlainTextEdit::clear();
    TakeForm(form);
    AppendChunk(firstChunk);
    moveCursor(QTextCursor::Start);
    if (!IsComplete()) {
        rest_.start();
    }
}

void RawPane::AppendChunk(qsizetype wanted) {
    const qsizetype size = NextChunk(text_, position_, wanted);
    if (size == 0) {
        return;
    }
    // A cursor of its own leaves the user's selection and place in the text alone.
    QTextCursor user = textCursor();
    user.setKeepPositionOnInsert(true);
    setTextCursor(user);
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    if (!endsLine_) {
        // Laying out a line of megabytes would freeze the window, so such a line is shown in several.
        end.insertBlock();
    }
    const QString chunk = text_.mid(position_, size);
    end.insertText(chunk);
    position_ += size;
    endsLine_ = chunk.endsWith(QLatin1Char('\n')) || chunk.endsWith(QLatin1Char('\r'));
    CutWhenTooLong();
}

void RawPane::CutWhenTooLong() {
    if (IsComplete() || document()->blockCount() < mostLines) {
        return;
    }
    isCut_ = true;
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    if (!endsLine_) {
        end.insertBlock();
    }
    const QLocale locale;
    end.insertText(tr("[The rest is not shown: %1 of %2 characters]")
                       .arg(locale.toString(text_.size() - position_), locale.toString(text_.size())));
}

void RawPane::AppendForAWhile() {
    QElapsedTimer spent;
    spent.start();
    while (!IsComplete() && spent.elapsed() < budgetMs) {
        AppendChunk(laterChunk);
    }
    if (IsComplete()) {
        rest_.stop();
    }
}

} // namespace quellbox
