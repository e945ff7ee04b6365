#include "ui/queue/rows/RowCaptions.h"

#include "text/ByteCount.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

using std::chrono::nanoseconds;
using std::chrono::seconds;

/// As many as are shown.
seconds begunSeconds(nanoseconds left)
{
    return std::max(std::chrono::ceil<seconds>(left), seconds(0));
}

bool counts(const ItemWait& wait)
{
    return wait.kind == ItemWait::nextTry || wait.kind == ItemWait::serverRest;
}

QString nextTryText(AppLanguage language, nanoseconds left)
{
    if (left <= nanoseconds(0))
        return pair(language, u"trying again soon", u"nuovo tentativo a breve");
    return pair(language, u"trying again in ", u"nuovo tentativo tra ") + timeLeftText(left);
}

} // namespace

QString figuresText(const DownloadItem& item, AppLanguage language)
{
    const qint64 total = item.totalBytes();
    const qint64 received = item.bytesReceived();
    if (item.status() == DownloadStatus::downloading)
        return {};
    if (item.status() == DownloadStatus::completed || total < 1 || received < 1) {
        const qint64 known = total < 1 ? received : total;
        return known < 1 ? QString() : byteCountText(known);
    }
    return byteCountText(received) + pair(language, u" of ", u" di ") + byteCountText(total);
}

QString waitText(const ItemWait& wait, AppLanguage language, SteadyTime now)
{
    switch (wait.kind) {
    case ItemWait::none:
        return {};
    case ItemWait::nextTry:
        return pair(language, u"Connection lost, ", u"Connessione persa, ") + nextTryText(language, wait.due - now);
    case ItemWait::serverRest:
        return pair(language, u"The server asks for a pause, ", u"Il server chiede una pausa, ") +
               nextTryText(language, wait.due - now);
    case ItemWait::sameName:
        return pair(language, u"Waits for another link of this name", u"Attende un altro link con questo nome");
    case ItemWait::signIn:
        return pair(language, u"Waits for the sign-in to ", u"Attende l'accesso a ") + wait.host;
    }
    return {};
}

std::optional<SteadyTime> waitTextChangesAt(const ItemWait& wait, SteadyTime now)
{
    if (!counts(wait) || wait.due <= now)
        return std::nullopt;
    return wait.due - (begunSeconds(wait.due - now) - seconds(1));
}

QString timeLeftText(nanoseconds left)
{
    constexpr qint64 minute = 60;
    const qint64 all = begunSeconds(left).count();
    QStringList parts;
    if (all >= minute)
        parts << u"%1 min"_s.arg(all / minute);
    if (all < minute || all % minute > 0)
        parts << u"%1 s"_s.arg(all % minute);
    return parts.join(u' ');
}

} // namespace vormel
