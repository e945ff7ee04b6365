#include "sites/services/PageScripts.h"

#include "sites/services/Html.h"

namespace vormel::sites {

std::string inPieces(const std::string& address)
{
    const std::size_t colon = address.find(':');
    return "'" + address.substr(0, colon + 1) + "' + '" + address.substr(colon + 1) + "'";
}

std::string countdown(std::chrono::milliseconds time, const std::string& then)
{
    constexpr std::chrono::milliseconds step(100);
    return "<p>Wait: <b id=\"left\"></b></p>" + scriptElement("let left = " + std::to_string(time / step) + ";" +
                                                              "const timer = setInterval(() => {"
                                                              "document.getElementById('left').textContent = left;"
                                                              "if (left-- > 0) return;"
                                                              "clearInterval(timer);" +
                                                              then + ";}, " + std::to_string(step.count()) + ");");
}

} // namespace vormel::sites
