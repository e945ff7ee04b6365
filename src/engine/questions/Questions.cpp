#include "engine/questions/Questions.h"

#include <algorithm>

namespace vormel {

namespace {

template <typename Question>
std::optional<Question> firstOf(const std::deque<Question>& questions)
{
    return questions.empty() ? std::nullopt : std::optional(questions.front());
}

/// The first question, which is put no longer.
template <typename Question>
std::optional<Question> takeFirst(std::deque<Question>& questions)
{
    std::optional<Question> first = firstOf(questions);
    if (first)
        questions.pop_front();
    return first;
}

} // namespace

void Questions::ask(PendingCaptcha question)
{
    m_captchas.push_back(std::move(question));
    Q_EMIT changed();
}

void Questions::ask(PendingHostSelection question)
{
    m_hostSelections.push_back(std::move(question));
    Q_EMIT changed();
}

void Questions::ask(PendingExtractionPassword question)
{
    if (isPasswordAskedFor(question.itemID))
        return;
    m_passwords.push_back(std::move(question));
    Q_EMIT changed();
}

bool Questions::awaitLogin(const ItemId& id, SupportedHost host, SteadyTime triedAt)
{
    if (m_signIns.wasInVain(host, triedAt, m_clock.steadyNow()))
        return false;
    if (!m_signIns.hasSignedInSince(host, triedAt) && m_signIns.await(id, host))
        Q_EMIT changed();
    return true;
}

std::optional<PendingCaptcha> Questions::pendingCaptcha() const
{
    return firstOf(m_captchas);
}

void Questions::addCaptchaLinks(const std::vector<Link>& urls)
{
    const std::optional<PendingCaptcha> solved = takeFirst(m_captchas);
    if (!solved)
        return;
    Q_EMIT captchaSolved(*solved, urls);
    Q_EMIT changed();
}

void Questions::cancelCaptcha()
{
    const std::optional<PendingCaptcha> cancelled = takeFirst(m_captchas);
    if (!cancelled)
        return;
    Q_EMIT captchaCancelled(*cancelled);
    Q_EMIT changed();
}

std::optional<PendingHostSelection> Questions::pendingHostSelection() const
{
    return firstOf(m_hostSelections);
}

void Questions::confirmHostSelection(const std::vector<Link>& urls)
{
    const std::optional<PendingHostSelection> answered = takeFirst(m_hostSelections);
    if (!answered)
        return;
    Q_EMIT changed();
    Q_EMIT hostsChosen(*answered, urls);
}

void Questions::cancelHostSelection()
{
    const std::optional<PendingHostSelection> cancelled = takeFirst(m_hostSelections);
    if (!cancelled)
        return;
    Q_EMIT changed();
    Q_EMIT hostsCancelled(*cancelled);
}

std::optional<PendingExtractionPassword> Questions::pendingExtractionPassword() const
{
    return firstOf(m_passwords);
}

bool Questions::isPasswordAskedFor(const ItemId& id) const
{
    return std::any_of(m_passwords.begin(), m_passwords.end(), [&id](const auto& asked) { return asked.itemID == id; });
}

void Questions::submitExtractionPassword(const QString& password)
{
    const std::optional<PendingExtractionPassword> answered = takeFirst(m_passwords);
    if (!answered)
        return;
    Q_EMIT changed();
    Q_EMIT extractionPasswordGiven(answered->itemID, password);
}

void Questions::cancelExtractionPassword()
{
    if (takeFirst(m_passwords))
        Q_EMIT changed();
}

void Questions::loginSucceeded()
{
    m_signIns.signedIn(m_clock.steadyNow());
    const QSet<ItemId> waited = m_signIns.answered();
    Q_EMIT changed();
    Q_EMIT signedIn(waited);
}

void Questions::cancelLogin()
{
    Q_EMIT signInCancelled(m_signIns.answered());
    Q_EMIT changed();
}

void Questions::forget(const QSet<ItemId>& ids)
{
    for (const ItemId& id : ids)
        m_signIns.forget(id);
    const std::size_t gone =
        std::erase_if(m_passwords, [&ids](const auto& asked) { return ids.contains(asked.itemID); }) +
        std::erase_if(m_captchas, [&ids](const auto& asked) { return ids.contains(asked.placeholderID); });
    if (gone > 0)
        Q_EMIT changed();
}

} // namespace vormel
