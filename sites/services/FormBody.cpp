#include "sites/services/FormBody.h"

#include <algorithm>
#include <charconv>

namespace vormel::sites {

namespace {

std::string formDecoded(std::string_view text)
{
    constexpr int hexadecimal = 16;
    std::string decoded;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned char byte = 0;
        const bool isCoded =
            text[at] == '%' && at + 2 < text.size() &&
            std::from_chars(text.data() + at + 1, text.data() + at + 3, byte, hexadecimal).ptr == text.data() + at + 3;
        const char plain = text[at] == '+' ? ' ' : text[at];
        decoded += isCoded ? static_cast<char>(byte) : plain;
        at += isCoded ? 2 : 0;
    }
    return decoded;
}

} // namespace

std::map<std::string, std::string> formFields(std::string_view body)
{
    std::map<std::string, std::string> fields;
    while (!body.empty()) {
        const std::string_view pair = body.substr(0, body.find('&'));
        body.remove_prefix(std::min(pair.size() + 1, body.size()));
        const std::size_t equals = pair.find('=');
        if (equals != std::string_view::npos)
            fields[formDecoded(pair.substr(0, equals))] = formDecoded(pair.substr(equals + 1));
    }
    return fields;
}

std::string fieldValue(const std::map<std::string, std::string>& fields, const std::string& name)
{
    const auto field = fields.find(name);
    return field == fields.end() ? std::string() : field->second;
}

std::string cookieValue(std::string_view cookieHeader, std::string_view name)
{
    while (!cookieHeader.empty()) {
        const std::string_view cookie = cookieHeader.substr(0, cookieHeader.find(';'));
        cookieHeader.remove_prefix(std::min(cookie.size() + 1, cookieHeader.size()));
        while (cookieHeader.starts_with(' '))
            cookieHeader.remove_prefix(1);
        if (cookie.starts_with(std::string(name) + '='))
            return std::string(cookie.substr(name.size() + 1));
    }
    return {};
}

} // namespace vormel::sites
