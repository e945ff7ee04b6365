#include "sites/Answer.h"

#include <stdexcept>
#include <utility>

namespace vormel::sites {

template <typename Change>
Answer Answer::changed(Change change) const
{
    auto copy = *this;
    change(copy.m_plan);
    return copy;
}

Answer Answer::file()
{
    return {};
}

Answer Answer::wholeFile()
{
    return Answer().changed([](AnswerPlan& plan) { plan.honoursRange = false; });
}

Answer Answer::page(int status, Content body, std::string contentType)
{
    return Answer().changed([&](AnswerPlan& plan) {
        plan.status = status;
        plan.page = std::move(body);
        plan.contentType = std::move(contentType);
    });
}

Answer Answer::empty(int status)
{
    return page(status, {}).withoutHeader("Content-Type");
}

Answer Answer::rangeRefused()
{
    return empty(416).changed([](AnswerPlan& plan) { plan.rangeRefused = true; });
}

Answer Answer::redirect(int status, std::string location)
{
    return page(status, "<html><body>Moved</body></html>").withHeader("Location", std::move(location));
}

Answer Answer::redirectNowhere(int status)
{
    return page(status, "<html><body>Moved</body></html>");
}

Answer Answer::raw(std::string bytes)
{
    return Answer().changed([&](AnswerPlan& plan) { plan.raw = std::move(bytes); });
}

Answer Answer::nothing()
{
    return Answer().changed([](AnswerPlan& plan) { plan.headFault = HeadFault::closeBefore; });
}

Answer Answer::withStatus(int status) const
{
    return changed([&](AnswerPlan& plan) { plan.status = status; });
}

Answer Answer::withStatusLine(std::string line) const
{
    return changed([&](AnswerPlan& plan) { plan.statusLine = std::move(line); });
}

Answer Answer::withHeader(std::string name, std::string value) const
{
    return changed([&](AnswerPlan& plan) { plan.headers.push_back({std::move(name), std::move(value)}); });
}

Answer Answer::withoutHeader(std::string name) const
{
    return changed([&](AnswerPlan& plan) { plan.leftOut.push_back(std::move(name)); });
}

Answer Answer::withDisposition(std::string value) const
{
    return withHeader("Content-Disposition", std::move(value));
}

Answer Answer::withCookie(std::string value) const
{
    return withHeader("Set-Cookie", std::move(value));
}

Answer Answer::withEtag(std::string etag) const
{
    return changed([&](AnswerPlan& plan) { plan.etag = std::move(etag); });
}

Answer Answer::withLastModified(std::string date) const
{
    return changed([&](AnswerPlan& plan) { plan.lastModified = std::move(date); });
}

Answer Answer::withContentRange(std::string value) const
{
    return changed([&](AnswerPlan& plan) { plan.contentRange = std::move(value); });
}

Answer Answer::withoutContentRange() const
{
    return withoutHeader("Content-Range");
}

Answer Answer::withTotal(std::int64_t total) const
{
    return changed([&](AnswerPlan& plan) { plan.total = total; });
}

Answer Answer::withUnknownTotal() const
{
    return changed([](AnswerPlan& plan) { plan.unknownTotal = true; });
}

Answer Answer::shiftedBy(std::int64_t bytes) const
{
    return changed([&](AnswerPlan& plan) { plan.shift = bytes; });
}

Answer Answer::asMultipart() const
{
    return changed([](AnswerPlan& plan) { plan.multipart = true; });
}

Answer Answer::untilClose() const
{
    return changed([](AnswerPlan& plan) { plan.framing = Framing::untilClose; });
}

Answer Answer::chunked() const
{
    return changed([](AnswerPlan& plan) { plan.framing = Framing::chunked; });
}

Answer Answer::chunkedWithoutEnd() const
{
    return changed([](AnswerPlan& plan) { plan.framing = Framing::chunkedWithoutEnd; });
}

Answer Answer::endlessTrailers() const
{
    return changed([](AnswerPlan& plan) { plan.framing = Framing::chunkedEndlessTrailers; });
}

Answer Answer::withContentLength(std::string text) const
{
    return changed([&](AnswerPlan& plan) { plan.contentLength = std::move(text); });
}

Answer Answer::withContentLengthOff(std::int64_t difference) const
{
    return changed([&](AnswerPlan& plan) { plan.contentLengthOff = difference; });
}

Answer Answer::closing() const
{
    return changed([](AnswerPlan& plan) { plan.closing = true; });
}

Answer Answer::followedBy(std::string bytes) const
{
    return changed([&](AnswerPlan& plan) { plan.surplus = std::move(bytes); });
}

Answer Answer::cutHead() const
{
    return changed([](AnswerPlan& plan) { plan.headFault = HeadFault::cutInside; });
}

Answer Answer::endlessHeaders() const
{
    return changed([](AnswerPlan& plan) { plan.headFault = HeadFault::endless; });
}

Answer Answer::stallBeforeHead() const
{
    return changed([](AnswerPlan& plan) { plan.headFault = HeadFault::stallBefore; });
}

Answer Answer::delayedBy(std::chrono::milliseconds time) const
{
    return changed([&](AnswerPlan& plan) { plan.delay = time; });
}

Answer Answer::closeAfter(std::int64_t bytes) const
{
    return cutting(Cut::close, bytes);
}

Answer Answer::resetAfter(std::int64_t bytes) const
{
    return cutting(Cut::reset, bytes);
}

Answer Answer::stallAfter(std::int64_t bytes) const
{
    return cutting(Cut::stall, bytes);
}

Answer Answer::cutting(Cut cut, std::int64_t bytes) const
{
    return changed([&](AnswerPlan& plan) {
        plan.cut = cut;
        plan.cutAfter = bytes;
    });
}

Answer Answer::dripping(std::int64_t bytes, std::chrono::milliseconds interval) const
{
    if (bytes <= 0)
        throw std::invalid_argument("a drip needs at least one byte");
    return changed([&](AnswerPlan& plan) {
        plan.dripBytes = bytes;
        plan.dripInterval = interval;
    });
}

} // namespace vormel::sites
