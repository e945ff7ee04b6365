#include "Rules.h"

#include "SourceFile.h"

#include <algorithm>
#include <map>
#include <regex>
#include <set>

namespace vormel::architecture {

namespace {

namespace fs = std::filesystem;

/// What each floor may include besides itself, as the beginnings of paths below src/.
const std::map<std::string, std::vector<std::string>> allowedBelow{
    {"text", {}},
    {"platform", {"text/"}},
    {"webengine", {"text/", "platform/"}},
    {"model", {"text/", "platform/"}},
    {"archive", {"text/", "platform/", "model/"}},
    {"resolvers", {"text/", "platform/", "model/"}},
    {"engine", {"text/", "platform/", "model/", "archive/", "resolvers/"}},
    {"kit", {"text/", "platform/", "model/"}},
    {"ui", {"text/", "platform/", "model/", "archive/", "resolvers/", "engine/", "kit/"}},
    {"web", {"text/", "platform/", "model/", "kit/"}},
    {"app", {"text/", "platform/", "model/", "archive/", "resolvers/", "engine/", "kit/", "ui/", "web/"}},
};

const std::set<std::string> windowFloors{"kit", "ui", "web", "app"};

bool mayInclude(const std::string& floor, const std::string& included)
{
    const auto startsIncluded = [&](const std::string& start) { return included.starts_with(start); };
    return startsIncluded(floor + '/') || std::ranges::any_of(allowedBelow.at(floor), startsIncluded);
}

/// The name inside an include directive of either form; empty for any other line.
std::string includedName(const std::string& line)
{
    static const std::regex directive(R"(^\s*#\s*include\s*[<"]([^>"]+)[>"])");
    std::smatch match;
    return std::regex_search(line, match, directive) ? match[1].str() : std::string();
}

/// The path below src/ that an include names, looked for as the compiler does; empty when it is none of ours.
std::string pathBelow(const fs::path& sourceFolder, const SourceFile& source, const std::string& included)
{
    const auto folder = fs::path(source.path).parent_path();
    for (const auto& candidate : {(folder / included).lexically_normal(), fs::path(included).lexically_normal()}) {
        if (fs::exists(sourceFolder / candidate))
            return candidate.generic_string();
    }
    // A floor's name in front means ours even where the file is missing: the compiler will say so, later.
    return allowedBelow.contains(included.substr(0, included.find('/'))) ? included : std::string();
}

/// Qt's own folder of widget headers is the list of them.
bool isWidgetHeader(const std::string& included)
{
    return !included.empty() &&
           (included.starts_with("QtWidgets/") || fs::exists(fs::path(VORMEL_WIDGET_HEADERS) / included));
}

template <typename Judge>
Breaches eachLine(const fs::path& sourceFolder, Judge judge)
{
    Breaches breaches;
    for (const auto& source : readSources(sourceFolder)) {
        for (std::size_t i = 0; i < source.lines.size(); ++i) {
            const std::string wrong = judge(source, source.lines[i]);
            if (!wrong.empty())
                breaches.push_back(source.position(i + 1) + ": " + wrong);
        }
    }
    return breaches;
}

bool isDrawerName(const std::string& name)
{
    static const std::regex drawer("Util|Helper|Misc|^(utils?|helpers?|misc)\\b");
    return std::regex_search(name, drawer);
}

struct Lean
{
    std::string from; ///< folders
    std::string to;
    std::string position;
};

std::string folderOf(const std::string& path)
{
    return fs::path(path).parent_path().generic_string();
}

/// Every include that leads from one folder to another of the same floor.
std::vector<Lean> leansWithinFloors(const fs::path& sourceFolder)
{
    std::vector<Lean> leans;
    for (const auto& source : readSources(sourceFolder)) {
        for (std::size_t i = 0; i < source.lines.size(); ++i) {
            const std::string name = includedName(source.lines[i]);
            const std::string included = name.empty() ? name : pathBelow(sourceFolder, source, name);
            const bool isOfFloor = included.starts_with(source.floor() + '/');
            if (isOfFloor && folderOf(included) != folderOf(source.path))
                leans.push_back({folderOf(source.path), folderOf(included), source.position(i + 1)});
        }
    }
    return leans;
}

bool leadsTo(const std::string& goal, const std::string& from, const std::vector<Lean>& leans,
             std::set<std::string>& seen)
{
    return std::ranges::any_of(leans, [&](const Lean& lean) {
        return lean.from == from &&
               (lean.to == goal || (seen.insert(lean.to).second && leadsTo(goal, lean.to, leans, seen)));
    });
}

} // namespace

Breaches floorBreaches(const fs::path& sourceFolder)
{
    Breaches breaches = eachLine(sourceFolder, [&](const SourceFile& source, const std::string& line) {
        const std::string name = includedName(line);
        const std::string included = name.empty() ? name : pathBelow(sourceFolder, source, name);
        if (included.empty() || !allowedBelow.contains(source.floor()) || mayInclude(source.floor(), included))
            return std::string();
        return source.floor() + " must not include " + included;
    });
    for (const auto& source : readSources(sourceFolder)) {
        if (!allowedBelow.contains(source.floor()))
            breaches.push_back(source.position(1) + ": stands on no known floor");
    }
    return breaches;
}

Breaches widgetBreaches(const fs::path& sourceFolder)
{
    return eachLine(sourceFolder, [](const SourceFile& source, const std::string& line) {
        const std::string name = includedName(line);
        const bool breach = !windowFloors.contains(source.floor()) && isWidgetHeader(name);
        return breach ? source.floor() + " must not know the widget header " + name : std::string();
    });
}

Breaches environmentBreaches(const fs::path& sourceFolder)
{
    static const std::regex reading(R"(\b((secure_)?getenv|qgetenv|qEnvironmentVariable\w*)\b)");
    return eachLine(sourceFolder, [](const SourceFile& source, const std::string& line) {
        std::smatch match;
        const bool breach = source.floor() != "app" && std::regex_search(line, match, reading);
        return breach ? source.floor() + " must not read the environment with " + match[1].str() : std::string();
    });
}

Breaches nameBreaches(const fs::path& sourceFolder)
{
    Breaches breaches;
    for (const auto& entry : fs::recursive_directory_iterator(sourceFolder)) {
        const std::string name = entry.path().filename().string();
        if (isDrawerName(name))
            breaches.push_back("src/" + entry.path().lexically_relative(sourceFolder).generic_string() +
                               ":1: is named after a drawer, not after its job");
    }
    std::ranges::sort(breaches);
    return breaches;
}

Breaches circleBreaches(const fs::path& sourceFolder)
{
    const std::vector<Lean> leans = leansWithinFloors(sourceFolder);
    Breaches breaches;
    for (const Lean& lean : leans) {
        std::set<std::string> seen;
        if (leadsTo(lean.from, lean.to, leans, seen))
            breaches.push_back(lean.position + ": " + lean.to + " leads back to " + lean.from);
    }
    return breaches;
}

Breaches lengthBreaches(const fs::path& sourceFolder)
{
    constexpr std::size_t longest = 400;
    Breaches breaches;
    for (const auto& source : readSources(sourceFolder)) {
        if (source.lines.size() > longest)
            breaches.push_back(source.position(longest + 1) + ": is the line that is too many");
    }
    return breaches;
}

Breaches pragmaBreaches(const fs::path& sourceFolder)
{
    Breaches breaches;
    for (const auto& source : readSources(sourceFolder)) {
        const auto guards = [](const std::string& line) { return line.starts_with("#pragma once"); };
        if (source.path.ends_with(".h") && std::ranges::none_of(source.lines, guards))
            breaches.push_back(source.position(1) + ": lacks #pragma once");
    }
    return breaches;
}

} // namespace vormel::architecture
