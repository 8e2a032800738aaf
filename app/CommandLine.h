#pragma once

#include <QApplication>
#include <QCommandLineParser>

#include <memory>

namespace quellbox {

/// What the program is told when it is started.
class CommandLine {
public:
    CommandLine();

    /// Ends the program after it has answered --help or --version, or with an error for an unknown option.
    void Process(const QApplication& application) { parser_.process(application); }

    /// The archives that are named; more than one is an error.
    QStringList Archives() const { return parser_.positionalArguments(); }

    /// Whether the list is to be printed after the first refresh.
    bool PrintsList() const { return parser_.isSet(printList_); }

    /// The file that a picture of the window is to be saved in after the first refresh; empty for none.
    QString Picture() const { return parser_.value(screenshot_); }

    /// Whether the program ends by itself, so that nobody is there to answer a message box.
    bool Quits() const { return PrintsList() || parser_.isSet(screenshot_); }

private:
    QCommandLineParser parser_;
    QCommandLineOption printList_;
    QCommandLineOption screenshot_;
};

/// Makes the application object, which keeps the references. What only prints needs no display for it, and neither does
/// a picture where there is none. Otherwise the program ends with a sentence and the exit code 1 where no display
/// can be had.
std::unique_ptr<QApplication> MakeApplication(int& argc, char** argv);

/// Writes an error where it can be seen although no window is shown.
void PrintError(const QString& error);

} // namespace quellbox
