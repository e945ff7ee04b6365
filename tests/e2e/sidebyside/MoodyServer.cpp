#include "e2e/sidebyside/MoodyServer.h"

#include <memory>
#include <random>

namespace vormel::e2e {

namespace {

using sites::Answer;

Answer usualAnswer(const Offer& offer, bool isWhole)
{
    Answer answer = isWhole || offer.habit == Habit::withoutRanges ? Answer::wholeFile() : Answer::file();
    if (!offer.toldName.isEmpty())
        answer = answer.withDisposition("attachment; filename=\"" + offer.toldName.toStdString() + "\"");
    return offer.habit == Habit::withoutLength ? answer.chunked() : answer;
}

} // namespace

MoodyServer::MoodyServer(const Catalogue& catalogue, unsigned seed)
    : m_seed(seed)
{
    for (const Offer& offer : catalogue.offers()) {
        sites::Resource resource;
        resource.content = offer.content.toStdString();
        resource.respond = [this, &offer, count = std::make_shared<std::atomic<int>>(0)](const sites::Request&) {
            return answer(offer, (*count)++);
        };
        m_server.serve(offer.address.toStdString(), std::move(resource));
    }
}

QString MoodyServer::url(const Offer& offer) const
{
    return QString::fromStdString(m_server.url(offer.address.toStdString()));
}

sites::Answer MoodyServer::answer(const Offer& offer, int request) const
{
    if (offer.habit == Habit::dead)
        return Answer::empty(404);
    if (offer.habit == Habit::pageFirst && request == 0)
        return Answer::page(200, "<html>Later.</html>");
    if (m_isCalm)
        return usualAnswer(offer, false);
    std::seed_seq seeds{m_seed, static_cast<unsigned>(qHash(offer.address, 0)), static_cast<unsigned>(request)};
    std::mt19937 random(seeds);
    const auto somewhere = static_cast<std::int64_t>(random() % static_cast<unsigned>(offer.content.size() + 1));
    constexpr std::int64_t drop = 8192;
    const auto mood = random() % 100;
    if (mood < 30)
        return usualAnswer(offer, false).stallAfter(somewhere);
    if (mood < 38)
        return usualAnswer(offer, false).resetAfter(somewhere);
    if (mood < 46)
        return usualAnswer(offer, false).closeAfter(somewhere);
    if (mood < 52)
        return Answer::empty(503);
    if (mood < 58)
        return usualAnswer(offer, true).stallAfter(somewhere);
    if (mood < 70)
        return usualAnswer(offer, false).dripping(drop, std::chrono::milliseconds(1));
    return usualAnswer(offer, false);
}

} // namespace vormel::e2e
