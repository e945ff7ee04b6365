#include "SourceFile.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vormel::architecture {

namespace {

bool opensComment(const std::string& text, std::size_t at)
{
    return text.compare(at, 2, "//") == 0 || text.compare(at, 2, "/*") == 0;
}

/// A single quote between digits only groups them.
bool opensQuote(const std::string& text, std::size_t at)
{
    const bool grouping = at > 0 && std::isxdigit(static_cast<unsigned char>(text[at - 1])) != 0;
    return text[at] == '"' || (text[at] == '\'' && !grouping);
}

std::size_t endOfComment(const std::string& text, std::size_t at)
{
    const bool block = text[at + 1] == '*';
    const auto end = block ? text.find("*/", at + 2) : text.find('\n', at);
    return end == std::string::npos ? text.size() : end + (block ? 2 : 0);
}

/// The end of the line ends an unpaired quote as well: a raw string may hold one, and must not hide the rest of the
/// file.
std::size_t endOfQuoted(const std::string& text, std::size_t at)
{
    const char quote = text[at];
    for (++at; at < text.size() && text[at] != '\n'; ++at) {
        if (text[at] == quote)
            return at + 1;
        if (text[at] == '\\')
            ++at;
    }
    return std::min(at, text.size());
}

void blank(std::string& text, std::size_t from, std::size_t to)
{
    for (auto i = from; i < to; ++i) {
        if (text[i] != '\n')
            text[i] = ' ';
    }
}

SourceFile readSource(const std::filesystem::path& file, const std::filesystem::path& folder)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("could not read " + file.string());
    std::ostringstream text;
    text << stream.rdbuf();
    SourceFile source{file.lexically_relative(folder).generic_string(), {}};
    std::istringstream lines(withoutComments(text.str()));
    for (std::string line; std::getline(lines, line);)
        source.lines.push_back(line);
    return source;
}

} // namespace

std::string SourceFile::floor() const
{
    const auto slash = path.find('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

std::string SourceFile::position(std::size_t line) const
{
    return "src/" + path + ":" + std::to_string(line);
}

std::string withoutComments(const std::string& text)
{
    std::string result = text;
    for (std::size_t at = 0; at < text.size();) {
        if (opensComment(text, at)) {
            const auto end = endOfComment(text, at);
            blank(result, at, end);
            at = end;
        } else {
            at = opensQuote(text, at) ? endOfQuoted(text, at) : at + 1;
        }
    }
    return result;
}

std::vector<SourceFile> readSources(const std::filesystem::path& folder)
{
    std::vector<SourceFile> sources;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const auto extension = entry.path().extension();
        if (entry.is_regular_file() && (extension == ".h" || extension == ".cpp"))
            sources.push_back(readSource(entry.path(), folder));
    }
    std::sort(sources.begin(), sources.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
    return sources;
}

} // namespace vormel::architecture
