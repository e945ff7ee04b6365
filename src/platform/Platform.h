#pragma once

#include "platform/desktop/Folders.h"

namespace vormel {

class Clock;
class FileWriter;
class HttpClient;
class UserDefaults;

/// Everything that the program takes from the machine, handed down from where it is put together. Whatever is named
/// here outlives all that uses it.
struct Platform
{
    Clock& clock;
    HttpClient& http;
    FileWriter& fileWriter;
    UserDefaults& defaults;
    Folders folders;
};

} // namespace vormel
