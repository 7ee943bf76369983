#pragma once

namespace KXClient {

// What the process answers to its caller.
enum ExitStatus {
    AllWhole = 0,
    SomeFailed = 1,  // a recording failed, was refused or is not whole
    InputError = 2,  // command line, configuration or records; nothing was downloaded
    PluginError = 3, // the plug-in cannot be loaded or started
    TimedOut = 4,
    NoDisplay = 5, // no window can be shown
    Interrupted = 130,
};

} // namespace KXClient
