#pragma once

#include "platform/desktop/Folders.h"

namespace vormel {

class Clock;
class CookieStore;
class FileSync;
class FileWriter;
class HttpClient;
class NetworkState;
class SecretStore;
class Trash;
class UserDefaults;
class WebBrowser;

/// Everything that the program takes from the machine, handed down from where it is put together. Whatever is named
/// here outlives all that uses it.
struct Platform
{
    Clock& clock;
    HttpClient& http;
    CookieStore& cookies; ///< of all requests that name no other
    SecretStore& secrets;
    WebBrowser& web;
    FileWriter& fileWriter;
    FileSync& fileSync;
    UserDefaults& defaults;
    Trash& trash;
    NetworkState& network;
    Folders folders;
};

} // namespace vormel
