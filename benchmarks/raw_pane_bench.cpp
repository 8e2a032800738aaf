// A click on a large message: when its first screen is painted, when its tree is there, how long the window does not
// answer meanwhile, and when all of it is there. First with the source, then with the readable text in its place.
#include "app/MessageListView.h"
#include "benchmarks/Bench.h"
#include "benchmarks/ProgramWindow.h"
#include "benchmarks/TurnWatch.h"
#include "contents/frmRawPane.h"
#include "platform/LocalFileSystem.h"

#include <QAction>
#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr qsizetype megabyte = 1024 * 1024;
constexpr int rounds = 3;

QByteArray MakeMessage(qsizetype size, const QByteArray& line, const QByteArray& type = "text/plain") {
    QByteArray bytes =
        "X-Sender: a@example.com\r\nSubject: a large one\r\nContent-Type: " + type + "; charset=utf-8\r\n\r\n";
    bytes.reserve(size + line.size());
    while (bytes.size() < size) {
        bytes += line;
    }
    return bytes;
}

/// Notes when a widget is painted for the first time with text in it.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(RawPane* pane) : pane_(pane) {
        pane->viewport()->installEventFilter(this);
        clock_.start();
    }

    double FirstPaintMs() const { return firstNs_ / 1e6; }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && firstNs_ == 0 && pane_->document()->blockCount() > 1) {
            firstNs_ = static_cast<double>(clock_.nsecsElapsed());
        }
        return QObject::eventFilter(watched, event);
    }

private:
    RawPane* pane_;
    QElapsedTimer clock_;
    double firstNs_ = 0;
};

struct Measured {
    Best click;
    Best firstScreen;
    Best tree;
    Best gap;
    Best whole;
};

void Click(frmMain& form) {
    auto* list = form.findChild<MessageListView*>(QStringLiteral("lvwMessages"));
    Q_EMIT list->KeyDown(Qt::Key_Down); // what makes the next row that is reached show itself
    list->SelectOnly(0);
    Q_EMIT list->ItemClick(0);
}

void MeasureOnce(FileSystem& files, const QString& folder, TextForm form, Measured& measured) {
    ProgramWindow window(files, folder);
    window.Refresh();
    if (form == TextForm::Readable) {
        window.Form().findChild<QAction*>(QStringLiteral("mnuViewReadable"))->trigger();
    }
    auto* pane = window.Form().findChild<RawPane*>(QStringLiteral("rtfRaw"));
    QCoreApplication::processEvents();
    const PaintWatch paint(pane);
    const TurnWatch turns;
    double tree = 0;
    QElapsedTimer clock;
    clock.start();
    const double seconds = Time([&] {
        measured.click.Add(Time([&] { Click(window.Form()); }));
        while (window.Form().IsLoading() || !pane->IsComplete()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            if (tree <= 0 && !window.Form().IsLoading()) {
                tree = static_cast<double>(clock.nsecsElapsed()) / 1e9;
            }
        }
    });
    Require(tree > 0, "the tree was never there");
    Require(paint.FirstPaintMs() > 0, "no text was painted");
    measured.firstScreen.Add(paint.FirstPaintMs() / 1e3);
    measured.tree.Add(tree);
    measured.gap.Add(turns.LongestMs() / 1e3);
    measured.whole.Add(seconds);
}

double MeasureForm(FileSystem& files, const QString& folder, TextForm form) {
    Measured measured;
    for (int round = 0; round < rounds; ++round) {
        MeasureOnce(files, folder, form, measured);
    }
    std::printf(form == TextForm::Source ? "  source\n" : "  readable text\n");
    Report("    return from the click", measured.click.seconds * 1e3, "ms");
    Report("    first screen", measured.firstScreen.seconds * 1e3, "ms");
    Report("    the tree", measured.tree.seconds * 1e3, "ms");
    Report("    longest gap between turns", measured.gap.seconds * 1e3, "ms");
    Report("    all of it", measured.whole.seconds * 1e3, "ms");
    return measured.whole.seconds;
}

void Measure(const char* what, const QByteArray& bytes) {
    const QTemporaryDir folder;
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    const QString path = folder.path() + QLatin1Char('/');
    files->WriteWhole(path + QStringLiteral("large.eml"), bytes);
    std::printf("%s\n", what);
    const double source = MeasureForm(*files, path, TextForm::Source);
    const double readable = MeasureForm(*files, path, TextForm::Readable);
    Report("  all of the readable text / all of the source", readable / source, "times", "< 1");
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    Measure("25 MiB in lines of 76 characters", MakeMessage(25 * megabyte, QByteArray(76, 'x') + "\r\n"));
    Measure("25 MiB in one line", MakeMessage(25 * megabyte, QByteArray(4096, 'x')));
    Measure(
        "25 MiB of a page in paragraphs",
        MakeMessage(25 * megabyte, "<p>" + QByteArray("some words of a text ").repeated(40) + "</p>\r\n", "text/html"));
    Measure("25 MiB of a newsletter",
            MakeMessage(25 * megabyte,
                        "<tr><td style='color:#333;font-size:14px'><p class=x>Some words that are read</p></td><td>"
                        "<a href='http://news.example/1'>More of it</a>&nbsp;</td></tr>\r\n",
                        "text/html"));
    Measure("50 MiB of line ends", MakeMessage(50 * megabyte, QByteArray(4096, '\n')));
    Report("largest memory of the program", static_cast<double>(MemoryKiB("VmHWM:")) / 1024, "MiB");
    return 0;
}
