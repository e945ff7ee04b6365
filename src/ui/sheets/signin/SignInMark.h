#pragma once

#include <QWidget>

namespace vormel {

class AppSettings;
class GlyphLabel;
class Spinner;
class StyledLabel;

/// Says in a few words how far a sign-in has come. The settings must outlive it.
class SignInMark final : public QWidget
{
    Q_OBJECT

public:
    enum class State
    {
        none,
        signedIn,
        accountFound,
        loading,
    };

    SignInMark(const AppSettings& settings, QWidget* parent);

    void setState(State state);

private:
    void showTexts();

    const AppSettings& m_settings;
    State m_state = State::none;
    Spinner* m_spinner;
    GlyphLabel* m_check;
    StyledLabel* m_text;
};

} // namespace vormel
