#pragma once

#include <string>

namespace vormel::sites {

// Pages as services write them. Nothing is escaped.
[[nodiscard]] std::string htmlPage(const std::string& title, const std::string& body);
[[nodiscard]] std::string hiddenField(const std::string& name, const std::string& value);
// A form that is posted; `name` may be empty.
[[nodiscard]] std::string postForm(const std::string& action, const std::string& fields, const std::string& name = {});
[[nodiscard]] std::string scriptElement(const std::string& script);

} // namespace vormel::sites
