#pragma once

#include <QByteArrayView>
#include <QObject>
#include <QStringList>

#include <memory>

namespace quellbox {

/// The arguments of a program without its own name, in the readable form of PathBytes.h: they may be names of files,
/// whose bytes need not be those of any character set.
QStringList ArgumentTexts(int argc, char** argv);

/// The text of a name of a file as the standard input gives it, and the bytes in which the standard output gives it.
QString NameFromBytes(const QByteArray& bytes);
QByteArray BytesOfName(const QString& name);

/// What else an argument may mean: the name whose readable form it is, as it was printed before. Empty when there is
/// nothing else.
QString PrintedName(const QString& argument);

/// A line of the standard input without what ends lines here besides a line feed.
QByteArray NameOfLine(const QByteArray& line);

/// Makes the standard streams ready for bytes that are text in UTF-8: no line end is changed, what is written to a
/// reader who has gone is an error of the write and not the end of the program, and none is closed, as another file
/// would take its place.
void PrepareStreams();

/// Writes to the standard error output; what cannot be written there can be told nowhere.
void WriteError(QByteArrayView bytes);

/// Whether somebody reads the standard error output on a terminal.
bool IsErrorTerminal();

/// Whether the standard output goes to a terminal.
bool IsOutputTerminal();

/// Writes to the standard output. Returns false when nobody reads it any more, when it cannot be written, or when the
/// user wants the program to end while nobody reads.
bool WriteOutput(QByteArrayView bytes);

/// Whether the reader of the standard output has gone, or the user waits no more for one, which is no error of the
/// program. Knows of a reader that goes while nothing is written, where the system tells.
bool IsOutputClosed();

/// Tells that the user wants the program to end: Ctrl+C, and what else asks a program without a window to end. Who asks
/// again, a second later or more, ends it at once. There is one object at most.
class Interrupts : public QObject {
    Q_OBJECT

public:
    Interrupts();
    ~Interrupts() override;
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;

    /// Whether it was told, also before the event loop gets to the signal.
    bool Came() const;

Q_SIGNALS:
    void Interrupted();

private:
    class Watch;

    std::unique_ptr<Watch> watch_;
};

} // namespace quellbox
