#pragma once

#include <QString>

#include <array>

namespace vormel {

/// The language of all visible text.
enum class AppLanguage
{
    english,
    italian,
};

inline constexpr std::array<AppLanguage, 2> allLanguages{AppLanguage::english, AppLanguage::italian};

/// The stored form of a language, which is also its label.
[[nodiscard]] inline QString rawValue(AppLanguage language)
{
    return language == AppLanguage::italian ? QStringLiteral("Italiano") : QStringLiteral("English");
}

/// Only the exact stored form of Italian gives Italian; everything else is English.
[[nodiscard]] inline AppLanguage languageFromRawValue(QStringView value)
{
    return value == u"Italiano" ? AppLanguage::italian : AppLanguage::english;
}

/// Every visible text stands at its place of use as such a pair.
[[nodiscard]] inline QString pair(AppLanguage language, QStringView english, QStringView italian)
{
    return (language == AppLanguage::italian ? italian : english).toString();
}

/// The same where the language is known only later.
struct TextPair
{
    const char16_t* english;
    const char16_t* italian;

    [[nodiscard]] QString in(AppLanguage language) const { return pair(language, english, italian); }
};

} // namespace vormel
