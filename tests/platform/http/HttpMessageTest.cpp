#include "platform/http/HttpMessage.h"

#include <gtest/gtest.h>

#include <vector>

namespace vormel {
namespace {

HttpResponse with(std::vector<HttpHeader> headers)
{
    HttpResponse response;
    response.headers = std::move(headers);
    return response;
}

TEST(HttpResponse, TheFirstHeaderOfANameInAnyLetterCaseCounts)
{
    const HttpResponse response = with({{"X-A", "1"}, {"x-a", "2"}, {"X-B", ""}});
    EXPECT_EQ(response.header("x-A"), "1");
    EXPECT_EQ(response.header("X-B"), "");
    EXPECT_EQ(response.header("X-C"), std::nullopt);
}

TEST(HttpResponse, TheMimeTypeHasNoParametersAndSmallLetters)
{
    EXPECT_EQ(with({{"Content-Type", "Text/HTML ; charset=UTF-8"}}).mimeType(), "text/html");
    EXPECT_EQ(with({{"content-type", "application/zip"}}).mimeType(), "application/zip");
    EXPECT_EQ(with({{"Content-Type", ";x"}}).mimeType(), "");
    EXPECT_EQ(with({}).mimeType(), "");
}

TEST(HttpResponse, OnlyAPlainLengthIsOne)
{
    const std::vector<std::pair<QByteArray, qint64>> rows = {{"0", 0},
                                                             {"1234", 1234},
                                                             {" 12 ", 12},
                                                             {"9223372036854775807", 9223372036854775807},
                                                             {"9223372036854775808", -1},
                                                             {"-1", -1},
                                                             {"+5", -1},
                                                             {"", -1},
                                                             {"12x", -1},
                                                             {"0x10", -1},
                                                             {"1 2", -1},
                                                             {"1,2", -1},
                                                             {"1e3", -1}};
    for (const auto& [text, length] : rows)
        EXPECT_EQ(with({{"Content-Length", text}}).expectedContentLength(), length) << text.toStdString();
    EXPECT_EQ(with({}).expectedContentLength(), -1);
}

TEST(HttpResponse, ALengthBesideATransferCodingMeansNothing)
{
    EXPECT_EQ(with({{"Transfer-Encoding", "chunked"}, {"Content-Length", "5"}}).expectedContentLength(), -1);
}

} // namespace
} // namespace vormel
