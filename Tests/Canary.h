#pragma once

// The passwords and keys of the tests, as they are recognised in what a run leaves behind. Checks/canaries.py looks for
// each text that stands between quotation marks in this file.
namespace Canary {

// What a test uses as a password, a key or a token of its own begins with one of these.
constexpr const char* Marks[] = {"canary", "Canary-"};

// What the embedded site's recordings are opened with.
constexpr const char* BuiltIn[] = {
    "Gate-North-21", "Depot_55!",  "rec8 Pass",   "St41rs",  "d0or:bell",       "tok-7719-e4c2",   "Garage new",
    "Attic true",    "Attic told", "last year's", "Harb0ur", "picture-key-KXC", "record-key-4611",
};

} // namespace Canary
