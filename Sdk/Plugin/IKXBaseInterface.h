#pragma once

#include <QtCore/QString>

// What every plug-in of the host family answers, whether it has a window or not.
//
// Thread: all operations are called on the host's GUI thread.
// Ownership: the host never deletes a plug-in through this class, hence the protected destructor.
class IKXBaseInterface
{
public:
    // True when the plug-in may be loaded by this host. The host skips a plug-in that answers false.
    virtual bool IsSupported() = 0;
    // Identifier of the plug-in, one of KXPluginIdentifiers; a static, null-terminated text.
    virtual const char* Id() = 0;
    // First start-up. `strJson` is the text of a JSON object; "strLanguage" holds the language code.
    virtual void Init(QString strJson) = 0;
    // Shows what the plug-in has to show. Allowed only after Init.
    virtual void Start() = 0;
    // Answers a query of the host by name; an empty text when the plug-in does not know the query.
    virtual QString Query(QString strName) = 0;
    // Ends all work; the content stays. The host calls it only before Destory and after an Init that succeeded: of a
    // widget plug-in, one that gave a widget.
    virtual void Stop() = 0;
    // Frees the content made by Init. The name is part of the interface.
    virtual void Destory() = 0;
    // Position among the host's plug-ins, ascending.
    virtual int Order() = 0;

protected:
    ~IKXBaseInterface() = default;
};
