#pragma once

#include "engine/questions/SignIns.h"
#include "model/PendingQuestions.h"

#include <QObject>

#include <deque>

namespace vormel {

/// What the user is asked, as values: nothing in the engine waits for a person. Of each kind the first question is the
/// one that is put, and others wait behind it; its answer is one of the operations below it. UI thread only.
class Questions final : public QObject
{
    Q_OBJECT

public:
    /// The clock must outlive this.
    explicit Questions(const Clock& clock)
        : m_clock(clock)
    {}

    void ask(PendingCaptcha question);
    void ask(PendingHostSelection question);
    /// Nothing more happens for an item that is asked about already.
    void ask(PendingExtractionPassword question);
    /// The queued item, whose try began then, waits until the user has signed in to its host; or for nothing, if that
    /// was done meanwhile. False if the user has signed in less than a minute ago and the host asks all the same: then
    /// nobody is asked again.
    [[nodiscard]] bool awaitLogin(const ItemId& id, SupportedHost host, SteadyTime triedAt);

    [[nodiscard]] std::optional<PendingCaptcha> pendingCaptcha() const;
    void addCaptchaLinks(const std::vector<Link>& urls);
    void cancelCaptcha();

    [[nodiscard]] std::optional<PendingHostSelection> pendingHostSelection() const;
    void confirmHostSelection(const std::vector<Link>& urls);
    void cancelHostSelection();

    [[nodiscard]] std::optional<PendingExtractionPassword> pendingExtractionPassword() const;
    /// Also while others are asked about first.
    [[nodiscard]] bool isPasswordAskedFor(const ItemId& id) const;
    void submitExtractionPassword(const QString& password);
    void cancelExtractionPassword();

    [[nodiscard]] const std::optional<SupportedHost>& pendingLogin() const { return m_signIns.pendingLogin(); }
    [[nodiscard]] bool isLoginAwaited(const ItemId& id) const { return m_signIns.isAwaited(id); }
    void loginSucceeded();
    void cancelLogin();
    /// The item waits for no sign-in any more.
    void forgetLogin(const ItemId& id) { m_signIns.forget(id); }

    /// The rows are gone, and with them the questions of their archives and containers and their sign-ins.
    void forget(const QSet<ItemId>& ids);

Q_SIGNALS:
    /// Another question is put, or none any more.
    void changed();
    // The answers. The question is gone by then.
    void captchaSolved(const vormel::PendingCaptcha& question, const std::vector<vormel::Link>& urls);
    void captchaCancelled(const vormel::PendingCaptcha& question);
    void hostsChosen(const vormel::PendingHostSelection& question, const std::vector<vormel::Link>& urls);
    void hostsCancelled(const vormel::PendingHostSelection& question);
    void extractionPasswordGiven(const vormel::ItemId& id, const QString& password);
    void signedIn(const QSet<vormel::ItemId>& waited);
    void signInCancelled(const QSet<vormel::ItemId>& waiting);

private:
    const Clock& m_clock;
    std::deque<PendingCaptcha> m_captchas;
    std::deque<PendingHostSelection> m_hostSelections;
    std::deque<PendingExtractionPassword> m_passwords;
    SignIns m_signIns;
};

} // namespace vormel
