#include "webengine/NavigationEnds.h"

namespace vormel {

namespace {

using namespace std::chrono_literals;

/// A file is told of after a tenth of that at most, many pages side by side included.
constexpr auto longestUntilFile = 300ms;
constexpr auto longestNavigation = 60s;

} // namespace

NavigationEnds::NavigationEnds(Clock& clock, Owner& owner)
    : m_clock(clock)
    , m_owner(owner)
{}

void NavigationEnds::begin()
{
    ++m_serial;
    m_hold.cancel();
    m_isUnderWay = true;
    m_isRefused = false;
    m_hasArrived = false;
    m_limit = m_clock.after(longestNavigation, [this] { giveUp(); });
}

void NavigationEnds::started()
{
    if (!m_isUnderWay || m_hasArrived || m_hold.isPending())
        begin();
}

void NavigationEnds::asked(bool isAllowed)
{
    started();
    m_isRefused = !isAllowed;
}

void NavigationEnds::arrived()
{
    m_hasArrived = m_isUnderWay;
}

void NavigationEnds::stopped()
{
    if (!m_isUnderWay)
        return;
    if (m_hasArrived)
        end(WebPage::End::loaded);
    else if (m_isRefused)
        end(WebPage::End::failed);
    else
        m_hold = m_clock.after(longestUntilFile, [this] { end(WebPage::End::failed); });
}

void NavigationEnds::finished(WebPage::End how)
{
    if (m_isUnderWay)
        end(how);
}

void NavigationEnds::fileCame()
{
    if (!m_isUnderWay || m_hold.isPending())
        end(WebPage::End::failed);
}

void NavigationEnds::died()
{
    end(WebPage::End::failed);
}

void NavigationEnds::giveUp()
{
    const bool hasArrived = m_hasArrived;
    end(hasArrived ? WebPage::End::loaded : WebPage::End::failed);
    m_owner.stopNavigation();
}

void NavigationEnds::end(WebPage::End how)
{
    m_isUnderWay = false;
    m_hold.cancel();
    m_limit.cancel();
    const auto tell = [this, how, serial = ++m_serial] {
        if (serial == m_serial)
            m_owner.navigationEnded(how);
    };
    QMetaObject::invokeMethod(&m_context, tell, Qt::QueuedConnection);
}

} // namespace vormel
