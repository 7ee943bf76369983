#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>

// What differs between the systems that the client runs on; one source file per system.
namespace KXClient {

// The first thing of the process: file names and output are UTF-8 whatever the locale says, and a reader that closed
// our output is a failed write, not the end of the process.
void PreparePlatform();

// The words behind the program's name, all of them: Qt takes those out that it knows itself.
QStringList Arguments(int iCount, char** ppArguments);

// Whether standard output is a terminal that understands ANSI sequences.
bool IsTerminal();
// Columns of that terminal, 80 when it does not tell.
int TerminalColumns();

// Turns the system's wish that the process ends (Ctrl+C, a termination signal) into a signal on the thread that made
// this object. Only the first wish is turned: the second ends the process at once. At most one exists at a time.
class StopSignal : public QObject
{
    Q_OBJECT

public:
    explicit StopSignal(QObject* pParent = nullptr);
    ~StopSignal() override;

signals:
    void SignalStop();
};

} // namespace KXClient
