#pragma once

#include "platform/web/CookieLine.h"

#include <QByteArrayList>
#include <QObject>

#include <functional>
#include <vector>

class QWebEngineCookieStore;

namespace vormel {

class Clock;

/// What cookies the engine has: it tells of each change and of nothing else, so they are all noted from the start.
/// UI thread only.
class EngineCookies
{
public:
    /// Store and clock outlive this. However many cookies change in one turn of the event loop, that is told once,
    /// in a later one.
    EngineCookies(QWebEngineCookieStore& store, Clock& clock, std::function<void()> onChange);

    [[nodiscard]] QByteArrayList lines() const;
    void add(const QByteArray& line);
    void remove(const QByteArrayList& lines);

private:
    void note(const CookieLine& cookie);
    void forget(const CookieLine& cookie);
    [[nodiscard]] bool isOver(const CookieLine& cookie) const;
    void tellLater();

    QWebEngineCookieStore& m_store;
    Clock& m_clock;
    std::function<void()> m_onChange;
    std::vector<CookieLine> m_cookies;
    bool m_isToBeTold = false;
    QObject m_context;
};

} // namespace vormel
