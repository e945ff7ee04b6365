#pragma once

#include "fixtures/ManualClock.h"
#include "platform/http/CurlHttpClient.h"
#include "platform/http/Recorder.h"
#include "sites/FileServer.h"

#include <gtest/gtest.h>

#include <ostream>

namespace vormel {

inline constexpr qint64 kib = 1024;
inline constexpr qint64 mib = 1024 * kib;

inline void PrintTo(HttpError::Kind kind, std::ostream* out)
{
    *out << "HttpError::Kind " << static_cast<int>(kind);
}

/// The real client against a real server of this machine, on a clock that only the test moves.
class LoopbackTest : public testing::Test
{
protected:
    using Kind = HttpError::Kind;

    [[nodiscard]] static QUrl urlOf(const std::string& text) { return QUrl(QString::fromStdString(text)); }
    [[nodiscard]] static HttpRequest requestFor(const std::string& url)
    {
        HttpRequest request;
        request.url = urlOf(url);
        return request;
    }
    [[nodiscard]] HttpRequest request(std::string_view path) const { return requestFor(server.url(path)); }

    /// Runs a whole transfer of the client.
    static Recorder::Heard run(HttpClient& by, HttpRequest request, Recorder& recorder)
    {
        const auto task = by.makeTask(std::move(request), recorder);
        task->resume();
        EXPECT_TRUE(recorder.waitForEnd());
        return recorder.heard();
    }
    Recorder::Heard run(HttpRequest request, Recorder& recorder) { return run(client, std::move(request), recorder); }
    Recorder::Heard run(HttpRequest request)
    {
        Recorder recorder;
        return run(std::move(request), recorder);
    }
    Recorder::Heard get(std::string_view path) { return run(request(path)); }

    static void expectError(const Recorder::Heard& heard, Kind kind)
    {
        ASSERT_TRUE(heard.error);
        EXPECT_EQ(heard.error->kind, kind) << heard.error->details.toStdString();
    }
    static void expectWhole(const Recorder::Heard& heard, const sites::PatternContent& content, std::int64_t offset = 0)
    {
        EXPECT_FALSE(heard.error) << heard.error->details.toStdString();
        EXPECT_EQ(heard.body.size(), content.size() - offset);
        EXPECT_EQ(content.firstMismatch(offset, {heard.body.constData(), static_cast<std::size_t>(heard.body.size())}),
                  std::nullopt);
    }

    fixtures::ManualClock clock;
    sites::FileServer server;
    CurlHttpClient client{clock};
};

} // namespace vormel
