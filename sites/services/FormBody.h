#pragma once

#include <map>
#include <string>
#include <string_view>

namespace vormel::sites {

// The fields of a posted form, decoded; of several with one name the last.
[[nodiscard]] std::map<std::string, std::string> formFields(std::string_view body);

// The value of a field; empty if there is none.
[[nodiscard]] std::string fieldValue(const std::map<std::string, std::string>& fields, const std::string& name);

// The value of a cookie that came with a request; empty if there is none.
[[nodiscard]] std::string cookieValue(std::string_view cookieHeader, std::string_view name);

} // namespace vormel::sites
