#include "model/ServicesJson.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <optional>

namespace vormel {

namespace {

using Reason = ServicesProblem::Reason;

/// Counts from 1. What follows the last line that says something counts as that line.
int lineAt(const QByteArray& bytes, std::size_t offset)
{
    qsizetype end = bytes.size();
    while (end > 0 && QChar::isSpace(static_cast<unsigned char>(bytes[end - 1])))
        --end;
    end = std::min(end, static_cast<qsizetype>(offset));
    return static_cast<int>(std::count(bytes.begin(), bytes.begin() + end, '\n')) + 1;
}

/// Hears what the parser finds, and gathers the entries. By false it ends the parser at the first thing that does not
/// belong there, so that nothing is ever nested.
class EntryGatherer : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, EntryGatherer>
{
public:
    EntryGatherer(const QByteArray& bytes, const rapidjson::MemoryStream& stream)
        : m_bytes(bytes)
        , m_stream(stream)
    {}

    std::vector<ServicesEntry> entries;
    std::optional<ServicesProblem> problem;

    bool StartObject() { return m_isInside ? refuse() : (m_isInside = true); }
    bool EndObject(rapidjson::SizeType /*members*/) { return true; }
    bool Key(const char* text, rapidjson::SizeType length, bool /*copy*/)
    {
        entries.push_back({QString::fromUtf8(text, static_cast<qsizetype>(length)), line(), false, {}});
        return true;
    }
    bool String(const char* text, rapidjson::SizeType length, bool /*copy*/)
    {
        if (!m_isInside)
            return refuse();
        entries.back().values.push_back({QString::fromUtf8(text, static_cast<qsizetype>(length)), line()});
        return true;
    }
    bool StartArray()
    {
        if (!m_isInside || std::exchange(m_isInList, true))
            return refuse();
        entries.back().isList = true;
        return true;
    }
    bool EndArray(rapidjson::SizeType /*elements*/)
    {
        m_isInList = false;
        return true;
    }
    bool RawNumber(const char* /*text*/, rapidjson::SizeType /*length*/, bool /*copy*/) { return refuse(); }
    /// Numbers, true, false and null.
    bool Default() { return refuse(); }

private:
    /// What the parser stands at; it only goes forward.
    int line()
    {
        const auto at = static_cast<qsizetype>(m_stream.Tell());
        m_line += static_cast<int>(std::count(m_bytes.begin() + m_counted, m_bytes.begin() + at, '\n'));
        m_counted = at;
        return m_line;
    }
    bool refuse()
    {
        problem = m_isInside ? ServicesProblem{Reason::wrongType, line(), entries.back().key, {}}
                             : ServicesProblem{Reason::notObject, line(), {}, {}};
        return false;
    }

    const QByteArray& m_bytes;
    const rapidjson::MemoryStream& m_stream;
    qsizetype m_counted = 0;
    int m_line = 1;
    bool m_isInside = false;
    bool m_isInList = false;
};

} // namespace

std::variant<std::vector<ServicesEntry>, ServicesProblem> parseServicesJson(const QByteArray& bytes)
{
    // The parser takes a NUL for the end.
    if (const qsizetype nul = bytes.indexOf('\0'); nul >= 0)
        return ServicesProblem{Reason::notJson, lineAt(bytes, static_cast<std::size_t>(nul)), {}, {}};
    constexpr unsigned flags =
        rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::MemoryStream stream(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    EntryGatherer gatherer(bytes, stream);
    rapidjson::Reader reader;
    reader.Parse<flags>(stream, gatherer);
    if (gatherer.problem)
        return *gatherer.problem;
    if (reader.HasParseError())
        return ServicesProblem{Reason::notJson, lineAt(bytes, reader.GetErrorOffset()), {}, {}};
    return std::move(gatherer.entries);
}

} // namespace vormel
