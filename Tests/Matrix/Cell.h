#pragma once

#include "Matrix/Outside.h"

#include <QtCore/QMap>

// The rows and columns of the matrix: ways out of the plug-in, and what is done inside them.
//
// Ids of a cell, behind the digit of its source: 1 its own task; 2 waits behind it; 3 paused; 4 failed; 5 held for its
// picture; 6, 7, 8 run beside it; 9 is new. "o": 6 of the next source runs, too.
namespace Matrix {

// Where the cell's own task stands before the trigger.
enum class Own {
    New,        // not sent yet, a place is free
    NewFull,    // not sent yet, no place is free
    Held,       // for its picture
    HeldAgain,  // for its picture, resumed: it has a row
    HeldLocked, // for its password
    Waiting,    // the next to start
    Running,
    PutBack, // refused, and its device's password is being asked for
    Paused,
    Failed
};

enum class Trigger {
    Request,
    RefusedRequest,
    RequestOnFullDisk,
    FinishOther,
    Press,
    Delete,
    Raise,
    FillDisk,
    PressAll,
    Ask,
    AnswerPicture,
    AnswerWrongKey,
    AnswerCloud,
    AnswerDevice,
    Stop
};

// Of the own task, inside the way out.
enum class Engine {
    Has,   // it waits or runs: the same record is ignored
    Holds, // the same record is a second task
    Ends,  // it is being finished: both would do
    Lost   // the client dropped it, or it is through: the same record is taken
};

struct Way
{
    const char* pszName;
    const char* pszSources; // their digits
    Own own;
    unsigned uKind;      // of the own record
    const char* pszCall; // what the line begins with; %N the source's name in operations, %I the own id
    Trigger trigger;
    int iCode; // of Trigger::Raise
    Engine engine;
    RowIs row;   // of the own task, inside; Unclear: being paused, the next press resumes it
    RowIs after; // of the own task, at rest, when nothing is done inside
};

// Steps, one letter each: S request, D delete, P pause by its button, R resume or retry by its button, F full disk with
// room again, N full disk, A pause all, B resume all, C folder change, Q question, X stop; T delivers what is on its
// way, K answers all questions; 0, 1, 2, 3 report that state, d reports data.
struct Act
{
    char target; // of the ids above, or 'o', or '-' for none
    const char* pszSteps;
};

const std::vector<Way>& Ways();
const std::vector<Act>& Acts();

// What becomes of a record at rest; Any where more than one end would do.
enum class Fate { Any, Active, Gone, Paused, Failed };

// Foretells a cell: which of its steps can be taken, and what must become of each record.
class Oracle
{
public:
    Oracle(const Way& way, const Act& act, int iSource);

    // False where a step means nothing, because what it needs is not there.
    bool Applies() const { return m_bApplies; }
    QMap<QString, Fate> Fates() const;
    QSet<QString> Twins() const { return m_twins; }
    QString IdOf(char target) const;

private:
    struct Record
    {
        Fate fate = Fate::Any;
        RowIs row = RowIs::Absent; // at that moment
        Engine engine = Engine::Lost;
        char posted = 0;     // a last state on its way
        bool bFixed = false; // Any, whatever happens
    };

    bool HasTarget() const;
    bool IsBeforePress() const;
    void AddOthers();
    bool Take(char step);
    bool Request(Record& record);
    bool Press(Record& record, bool bPauses);
    void PauseAll(Record& record, bool bByUser);
    void Deliver(Record& record);

    const Way& m_way;
    const Act& m_act;
    const int m_iSource;
    QMap<char, Record> m_records;
    QSet<QString> m_twins;
    bool m_bApplies;
};

// Sets a cell up, does its steps inside its way out, and checks what is left. What was wrong, each in one line.
QStringList RunCell(const Way& way, const Act& act, int iSource);

} // namespace Matrix
