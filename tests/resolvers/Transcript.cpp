#include "resolvers/Transcript.h"

#include "resolvers/pages/PageSession.h"

namespace vormel::fixtures {

namespace {

QByteArray line(const sites::Request& request)
{
    QByteArray text = QByteArray::fromStdString(request.method + ' ' + request.target);
    if (request.header("User-Agent") !=
        std::string(fullBrowserUA.data(), static_cast<std::size_t>(fullBrowserUA.size())))
        text += " | User-Agent: " + QByteArray::fromStdString(request.header("User-Agent").value_or("none"));
    for (const char* const name : {"Referer", "Cookie", "Content-Type"}) {
        if (const std::optional<std::string> value = request.header(name))
            text += QByteArray(" | ") + name + ": " + QByteArray::fromStdString(*value);
    }
    if (!request.body.empty())
        text += " | " + QByteArray::fromStdString(request.body);
    return text;
}

} // namespace

QByteArrayList transcript(const std::vector<sites::Request>& requests)
{
    QByteArrayList lines;
    for (const sites::Request& request : requests)
        lines.append(line(request));
    return lines;
}

} // namespace vormel::fixtures
