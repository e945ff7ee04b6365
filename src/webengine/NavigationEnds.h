#pragma once

#include "platform/clock/Clock.h"
#include "platform/web/WebPage.h"

#include <QObject>

namespace vormel {

/// Makes one end of each navigation of a page out of what the engine tells of it. UI thread only.
///
/// Where an answer cannot be shown, the engine says first that the navigation was stopped, and in a later moment that
/// there is a file. Whoever went on at the first would go on too early; so that waits for the second, for a while.
class NavigationEnds
{
public:
    class Owner
    {
    public:
        Owner() = default;
        Owner(const Owner&) = delete;
        Owner& operator=(const Owner&) = delete;
        virtual ~Owner() = default;

        /// The navigation takes too long. What the engine says to it is overheard.
        virtual void stopNavigation() = 0;
        /// Called from the event loop, never by what the engine tells. May end this.
        virtual void navigationEnded(WebPage::End end) = 0;
    };

    /// Both outlive this.
    NavigationEnds(Clock& clock, Owner& owner);

    /// One begins that has nothing of what went before. If it takes the place of another, that one has no end of its
    /// own.
    void begin();
    /// One is under way; perhaps that was known.
    void started();
    /// A request of it is asked for, or was refused.
    void asked(bool isAllowed);
    /// Its page is there, though perhaps not whole.
    void arrived();
    /// It came to nothing, so far.
    void stopped();
    void finished(WebPage::End end);
    /// It gave a file, or a link gave one without any navigation.
    void fileCame();
    /// Of the page's process, whether there was a navigation or not.
    void died();

    [[nodiscard]] bool isUnderWay() const { return m_isUnderWay; }

private:
    void giveUp();
    void end(WebPage::End end);

    Clock& m_clock;
    Owner& m_owner;
    bool m_isUnderWay = false;
    bool m_isRefused = false;
    bool m_hasArrived = false;
    Timer m_hold;
    Timer m_limit;
    int m_serial = 0; ///< of the newest navigation or end
    QObject m_context;
};

} // namespace vormel
