#pragma once

class QTranslator;

// The translator that stays installed when the plug-in's content is destroyed. Its texts lie in this library: it goes
// when a next life of the plug-in brings its own, at the latest when the library is unloaded.
//
// Thread: the GUI thread.
namespace LeftTranslator {

// Takes ownership; null is ignored.
void Keep(QTranslator* pTranslator);
void Drop();

} // namespace LeftTranslator
