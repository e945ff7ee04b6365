#pragma once

#include "model/AppLanguage.h"

#include <QString>

namespace vormel {

/// How the check of an account stands. Two failed ones are equal only with equal messages.
class AccountTestStatus
{
public:
    enum Kind : quint8
    {
        idle,
        testing,
        success,
        failed, ///< carries the message for the user
    };

    AccountTestStatus(Kind kind = idle) // NOLINT(google-explicit-constructor): a kind is a status
        : m_kind(kind)
    {}
    /// The message is the same in both languages.
    [[nodiscard]] static AccountTestStatus failure(const QString& message) { return {message, message}; }
    [[nodiscard]] static AccountTestStatus failure(const TextPair& message)
    {
        return {message.in(AppLanguage::english), message.in(AppLanguage::italian)};
    }

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// Empty unless the check failed.
    [[nodiscard]] QString message(AppLanguage language) const { return pair(language, m_english, m_italian); }

    friend bool operator==(const AccountTestStatus&, const AccountTestStatus&) = default;
    friend bool operator==(const AccountTestStatus& status, Kind kind) { return status.m_kind == kind; }

private:
    AccountTestStatus(QString english, QString italian)
        : m_kind(failed)
        , m_english(std::move(english))
        , m_italian(std::move(italian))
    {}

    Kind m_kind;
    QString m_english;
    QString m_italian;
};

} // namespace vormel
