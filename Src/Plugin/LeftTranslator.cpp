#include "Plugin/LeftTranslator.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>

#include <memory>

namespace LeftTranslator {

namespace {

struct Remover
{
    void operator()(QTranslator* pTranslator) const
    {
        if (QCoreApplication::instance())
            QCoreApplication::removeTranslator(pTranslator);
        delete pTranslator;
    }
};

// Destroyed when the library is unloaded.
std::unique_ptr<QTranslator, Remover> s_pTranslator;

} // namespace

void Keep(QTranslator* pTranslator)
{
    if (pTranslator)
        s_pTranslator.reset(pTranslator);
}

void Drop()
{
    s_pTranslator.reset();
}

} // namespace LeftTranslator
