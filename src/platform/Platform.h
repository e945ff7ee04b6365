#pragma once

#include "platform/desktop/Folders.h"

namespace vormel {

class Clock;
class FileSync;
class FileWriter;
class HttpClient;
class Trash;
class UserDefaults;

/// Everything that the program takes from the machine, handed down from where it is put together. Whatever is named
/// here outlives all that uses it.
struct Platform
{
    Clock& clock;
    HttpClient& http;
    FileWriter& fileWriter;
    FileSync& fileSync;
    UserDefaults& defaults;
    Trash& trash;
    Folders folders;
};

} // namespace vormel
