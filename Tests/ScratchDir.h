#pragma once

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

// A temporary folder of a test. It goes with the object; in a run of the suite it stays until Checks/canaries.py has
// looked for passwords in it.
class ScratchDir : public QTemporaryDir
{
public:
    ScratchDir() { setAutoRemove(!qEnvironmentVariableIsSet("KX_KEEP_SCRATCH")); }

    // The end of its use. False when a file of it is still open, on a system that minds.
    bool remove()
    {
        return autoRemove() ? QTemporaryDir::remove() : QDir().rename(path(), path() + QLatin1String(".kept"));
    }
};
