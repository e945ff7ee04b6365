#pragma once

#include "resolvers/captcha/CaptchaExtraction.h"
#include "ui/web/PageFrame.h"
#include "ui/web/PageSheet.h"

class QPushButton;
class QStackedLayout;

namespace vormel {

class CaptchaHostChooser;
class Spinner;
class StyledLabel;

/// The sheet in which the user solves the CAPTCHA of a container, on its own page, and then has its links read. Closing
/// it in any way but by links is `rejected`; what is read by then is dropped. Texts are in English only.
class CaptchaSheetView final : public PageSheet
{
    Q_OBJECT

public:
    /// All outlive the sheet.
    struct Ports
    {
        PageFrame::Ports page;
        const CaptchaPorts& reading;
    };

    CaptchaSheetView(const Ports& ports, const Link& containerURL, std::vector<SupportedHost> accountHosts,
                     QWidget* parent);

Q_SIGNALS:
    /// After the sheet was closed.
    void linksExtracted(const std::vector<vormel::Link>& urls);

private:
    void setUpParts();
    void layOut();
    void connectParts();
    void showState();
    void showError();
    void finish(const std::vector<Link>& urls);

    CaptchaExtraction* m_extraction;
    QWidget* m_solving; ///< all but the choice of a host
    StyledLabel* m_title;
    StyledLabel* m_notice;
    PageFrame* m_page;
    Spinner* m_spinner;
    StyledLabel* m_progress;
    StyledLabel* m_error;
    QPushButton* m_cancel;
    QPushButton* m_extract;
    CaptchaHostChooser* m_chooser;
    QStackedLayout* m_views;
};

} // namespace vormel
