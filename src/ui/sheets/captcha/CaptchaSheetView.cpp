#include "ui/sheets/captcha/CaptchaSheetView.h"

#include "kit/SheetButton.h"
#include "kit/Spinner.h"
#include "kit/StyledLabel.h"
#include "ui/sheets/captcha/CaptchaHostChooser.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QStackedLayout>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int spinnerSize = 16;

/// A window of its own would be an advertisement, and to load it would lose the CAPTCHA that is being solved.
PageFrame::Ports stayingOnThePage(PageFrame::Ports ports)
{
    ports.loadsWindows = false;
    return ports;
}

} // namespace

CaptchaSheetView::CaptchaSheetView(const Ports& ports, const Link& containerURL,
                                   std::vector<SupportedHost> accountHosts, QWidget* parent)
    : PageSheet(parent)
    , m_extraction(new CaptchaExtraction(ports.reading, containerURL, std::move(accountHosts)))
    , m_solving(new QWidget(this))
    , m_title(new StyledLabel(StyledLabel::Style::title, Tint::text, m_solving))
    , m_notice(new StyledLabel(StyledLabel::Style::body, Tint::secondary, m_solving))
    , m_page(new PageFrame(stayingOnThePage(ports.page), m_solving))
    , m_spinner(new Spinner(spinnerSize, m_solving))
    , m_progress(new StyledLabel(StyledLabel::Style::digits, Tint::secondary, m_solving))
    , m_error(new StyledLabel(StyledLabel::Style::body, Tint::red, m_solving))
    , m_cancel(new SheetButton(u"Cancel"_s, m_solving))
    , m_extract(new SheetButton(u"Extract Links"_s, m_solving))
    , m_chooser(new CaptchaHostChooser(this))
    , m_views(new QStackedLayout(this))
{
    constexpr double pageZoom = 0.85;
    m_extraction->setParent(this);
    setUpParts();
    layOut();
    connectParts();
    showState();
    m_page->setZoom(pageZoom);
    m_page->load(containerURL);
}

void CaptchaSheetView::setUpParts()
{
    setObjectName(u"captchaSheet"_s);
    m_title->setObjectName(u"captchaTitle"_s);
    m_title->setText(u"CAPTCHA Required"_s);
    m_notice->setObjectName(u"captchaNotice"_s);
    m_notice->setTextFormat(Qt::RichText);
    m_notice->setWordWrap(true);
    m_notice->setText(u"Solve the CAPTCHA below, wait for the file list to appear, then press <b>Extract Links</b>."_s);
    m_spinner->setObjectName(u"captchaSpinner"_s);
    m_progress->setObjectName(u"captchaProgress"_s);
    m_error->setObjectName(u"captchaError"_s);
    m_error->setTextFormat(Qt::PlainText);
    m_error->setWordWrap(true);
    m_cancel->setObjectName(u"cancelCaptcha"_s);
    m_extract->setObjectName(u"extractLinks"_s);
    for (QPushButton* button : {m_cancel, m_extract})
        button->setAutoDefault(false);
}

void CaptchaSheetView::layOut()
{
    auto* foot = new QHBoxLayout;
    foot->addWidget(m_spinner);
    foot->addWidget(m_progress);
    foot->addWidget(m_error, 1);
    foot->addStretch();
    foot->addWidget(m_cancel);
    foot->addWidget(m_extract);
    auto* column = new QVBoxLayout(m_solving);
    column->setContentsMargins(20, 18, 20, 18);
    column->setSpacing(10);
    column->addWidget(m_title);
    column->addWidget(m_notice);
    column->addWidget(m_page, 1);
    column->addLayout(foot);
    m_views->addWidget(m_solving);
    m_views->addWidget(m_chooser);
}

void CaptchaSheetView::connectParts()
{
    connect(m_extract, &QPushButton::clicked, m_extraction, [this] { m_extraction->extract(m_page->page()); });
    connect(m_cancel, &QPushButton::clicked, this, &CaptchaSheetView::reject);
    connect(m_chooser, &CaptchaHostChooser::chosen, m_extraction, &CaptchaExtraction::choose);
    connect(m_chooser, &CaptchaHostChooser::allChosen, m_extraction, &CaptchaExtraction::addAll);
    connect(m_chooser, &CaptchaHostChooser::cancelled, this, &CaptchaSheetView::reject);
    connect(m_extraction, &CaptchaExtraction::changed, this, &CaptchaSheetView::showState);
    connect(m_extraction, &CaptchaExtraction::linksExtracted, this, &CaptchaSheetView::finish);
    connect(this, &QDialog::finished, m_extraction, &CaptchaExtraction::cancel);
}

/// The button stays as it is while links are read: disabled, it would hand the focus to whatever comes next.
void CaptchaSheetView::showState()
{
    const bool isExtracting = m_extraction->isExtracting();
    const std::optional<CaptchaExtraction::Progress> progress = m_extraction->extractProgress();
    m_spinner->setVisible(isExtracting);
    m_progress->setVisible(progress.has_value());
    if (progress)
        m_progress->setText(u"Link %1/%2"_s.arg(progress->current).arg(progress->total));
    showError();
    const bool hasChoice = !m_extraction->hostGroups().empty();
    setWindowTitle(hasChoice ? u"Choose Download Server"_s : m_title->text());
    if (hasChoice && m_views->currentWidget() != m_chooser) {
        m_views->setCurrentWidget(m_chooser);
        m_chooser->offer(m_extraction->hostGroups());
    }
}

void CaptchaSheetView::showError()
{
    const QString error = m_extraction->errorMessage().value_or(QString());
    const bool isNew = !error.isEmpty() && error != m_error->text();
    m_error->setText(error);
    m_error->setVisible(!error.isEmpty());
    if (isNew) {
        QAccessibleEvent alert(m_error, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void CaptchaSheetView::finish(const std::vector<Link>& urls)
{
    accept();
    Q_EMIT linksExtracted(urls);
}

} // namespace vormel
