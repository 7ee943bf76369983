#pragma once

class QIcon;

// The looks of the client's own window, from the host's colour table. Thread: the GUI thread.
namespace KXClient {

// Gives the application its style, palette, style sheet and icon. What is shown already keeps its own colours, the
// plug-in's panel among it: call it first.
void ApplyWindowStyle(bool bDark);
QIcon WindowIcon();

} // namespace KXClient
