#pragma once

#include "Matrix/Outside.h"

#include <random>

// A walk of random steps: acts of the client, of the user and of the host, at rest and inside the ways out of the
// plug-in. The same seed gives the same steps, and fewer of them are the beginning of more.
class Walk
{
public:
    // `bAloud`: each step is printed before it is taken, for one that ends the program.
    Walk(quint32 uSeed, bool bAloud);

    // Takes that many steps and checks what is left. What was wrong, each in one line.
    QStringList Run(int iSteps);
    // The steps as they were taken, those inside a way out indented.
    QStringList Trace() const { return m_trace; }

private:
    int Below(int iEnd) { return static_cast<int>(m_random() % static_cast<quint32>(iEnd)); }
    bool OneOf(int iCount) { return Below(iCount) == 0; }
    void Step();
    void Act();
    void ActOfClient();
    void ActOfUser();
    void ActOfHost();
    void Report();
    void ComeBack(const QString& strLine);
    void CheckEnd();
    void Note(const QString& strWhat);
    QString SomeId();
    static QString SomeOf(const QStringList& ids, int iNumber);

    std::mt19937 m_random; // its numbers are the same everywhere
    const bool m_bAloud;
    const bool m_bStops;       // the walk ends with the stop of the plug-in
    int m_iUntilSurprise = -1; // ways out until the next surprise; negative: none
    int m_iDepth = 0;
    bool m_bRoom = true; // on the disk, and nothing was held back for want of it
    QStringList m_trace;
    Outside m_outside;
};
