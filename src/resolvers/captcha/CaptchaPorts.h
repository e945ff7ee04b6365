#pragma once

namespace vormel {

class Background;
class Clock;
class HttpClient;
class WebBrowser;
struct Services;

/// What links are read with out of a page whose CAPTCHA is solved. All outlive that.
struct CaptchaPorts
{
    HttpClient& http;
    Background& background; ///< where pages are read
    Clock& clock;
    WebBrowser& browser;
    const Services& services;
};

} // namespace vormel
