#pragma once
// Runs a program of ours or a converter and collects its standard output,
// within a time limit and a cap on the output.
//
// posix_spawn, not fork or QProcess: the find engine reads documents from
// several threads at once, and a spawned child touches nothing of the
// parent's memory before it executes the program. (A child that shares the
// parent's memory and runs library code first also corrupts the thread
// sanitizer's view of the parent: it then reports the joined workers as
// racing with the parent that joined them.)

#include <QString>
#include <QStringList>
#include <string>

namespace lexiform {

struct ChildRun {
    enum End { NotStarted, Exited, Signalled, TimedOut, TooMuchOutput, ReadFailed };
    End end = NotStarted;
    int code = 0;  // the exit status, the signal, or errno when it did not start or could not be read
    std::string output;

    bool succeeded() const { return end == Exited && code == 0; }
    // Why `who` gave no usable output, for a message; empty when it exited.
    QString failure(const QString& who) const;
};

// Standard input and error are /dev/null. A child still running when the
// time is up, or sending more than maxOutput bytes, is killed.
ChildRun runChild(const QString& program, const QStringList& arguments, int timeoutMs, long long maxOutput);

} // namespace lexiform
