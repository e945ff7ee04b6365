#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace vormel {

/// An error whose description is the user's message, in English whatever the language.
class DescribedError : public std::exception
{
public:
    explicit DescribedError(const QString& description)
        : m_description(description)
        , m_what(description.toUtf8())
    {}

    [[nodiscard]] const QString& errorDescription() const { return m_description; }
    [[nodiscard]] const char* what() const noexcept override { return m_what.constData(); }

private:
    QString m_description;
    QByteArray m_what;
};

} // namespace vormel
