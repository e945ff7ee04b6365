#pragma once

#include "ui/sheets/signin/TerabytezSignIn.h"
#include "ui/web/PageFrame.h"
#include "ui/web/PageSheet.h"

class QPushButton;

namespace vormel {

class SignInMark;
class StyledLabel;

/// The sheet in which the user signs in to Terabytez, on its own page. Closing it in any way but by Done is `rejected`,
/// and touches nothing that is stored.
class TerabytezLoginSheetView final : public PageSheet
{
    Q_OBJECT

public:
    /// All outlive the sheet.
    struct Ports
    {
        PageFrame::Ports page;
        TerabytezSite site;
    };

    TerabytezLoginSheetView(const Ports& ports, QWidget* parent);

    /// What the fields of the page are filled with; may come later than the page.
    void setCredentials(const Credentials& credentials) { m_signIn->setCredentials(credentials); }

Q_SIGNALS:
    /// After the sheet was closed. Without an info the account could not be read.
    void loggedIn(const std::optional<vormel::PremiumAccountInfo>& info);

private:
    void layOut();
    void bindTexts(const AppSettings& settings);
    void begin();
    void showState();
    void finish(const std::optional<PremiumAccountInfo>& info);

    TerabytezSignIn* m_signIn;
    StyledLabel* m_instruction;
    SignInMark* m_mark;
    PageFrame* m_page;
    QPushButton* m_cancel;
    QPushButton* m_done;
};

} // namespace vormel
