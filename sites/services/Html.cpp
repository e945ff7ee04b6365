#include "sites/services/Html.h"

namespace vormel::sites {

std::string htmlPage(const std::string& title, const std::string& body)
{
    return "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>";
}

std::string hiddenField(const std::string& name, const std::string& value)
{
    return "<input type=\"hidden\" name=\"" + name + "\" value=\"" + value + "\">";
}

std::string postForm(const std::string& action, const std::string& fields, const std::string& name)
{
    const std::string nameAttribute = name.empty() ? std::string() : "name=\"" + name + "\" ";
    return "<form " + nameAttribute + "method=\"POST\" action=\"" + action + "\">" + fields + "</form>";
}

std::string scriptElement(const std::string& script)
{
    return "<script>" + script + "</script>";
}

} // namespace vormel::sites
