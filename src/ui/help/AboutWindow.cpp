#include "ui/help/AboutWindow.h"

#include "config/Services.h"
#include "kit/BoundText.h"
#include "kit/PlatformTexts.h"
#include "kit/Separator.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "platform/http/CurlVersion.h"
#include "platform/web/WebBrowser.h"
#include "ui/help/AboutText.h"
#include "ui/help/ProgramHeader.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString systemText()
{
    return u"%1, %2, %3"_s.arg(QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(),
                               QGuiApplication::platformName());
}

} // namespace

AboutWindow::AboutWindow(const Ports& ports, QWidget* parent)
    : QDialog(parent)
    , m_ports(ports)
    , m_name(new StyledLabel(StyledLabel::Style::title, Tint::text, this))
    , m_version(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_kind(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_licence(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
    , m_surroundings(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
    , m_copy(new SheetButton(this))
    , m_close(new SheetButton(this))
{
    setObjectName(u"aboutWindow"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setUpParts();
    layOut();
    connect(m_copy, &QPushButton::clicked, this, &AboutWindow::copy);
    connect(m_close, &QPushButton::clicked, this, &AboutWindow::close);
    connect(&m_ports.tools, &ToolWatch::toolsChanged, this, &AboutWindow::showTexts);
    followLanguage(this, m_ports.settings, [this] { showTexts(); });
    m_close->setFocus();
}

void AboutWindow::setUpParts()
{
    m_version->setObjectName(u"aboutVersion"_s);
    m_licence->setObjectName(u"aboutLicence"_s);
    m_surroundings->setObjectName(u"aboutSurroundings"_s);
    m_copy->setObjectName(u"copyAbout"_s);
    m_copy->setAutoDefault(false);
    m_close->setObjectName(u"closeAbout"_s);
    m_close->setDefault(true);
    for (QLabel* label : {m_version, m_licence, m_surroundings}) {
        label->setTextFormat(Qt::PlainText);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    // The keyboard reaches the long one, and the button copies all.
    m_surroundings->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_surroundings->setFocusPolicy(Qt::StrongFocus);
    bindText(m_copy, &QPushButton::setText, m_ports.settings, {u"Copy", u"Copia"});
    bindText(m_close, &QPushButton::setText, m_ports.settings, {u"Close", u"Chiudi"});
    bindText(m_copy, &QWidget::setToolTip, m_ports.settings,
             {u"Copy all of this for a bug report", u"Copia tutto per una segnalazione"});
}

void AboutWindow::layOut()
{
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_copy);
    buttons->addStretch();
    buttons->addWidget(m_close);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 22, 24, 18);
    column->setSpacing(14);
    column->setSizeConstraint(QLayout::SetFixedSize); // as large as the texts
    column->addLayout(programHeader({m_name, m_version, m_kind}, this));
    column->addWidget(m_licence);
    column->addWidget(new Separator(Qt::Horizontal, this));
    column->addWidget(m_surroundings);
    column->addSpacing(4);
    column->addLayout(buttons);
}

QString AboutWindow::surroundings(AppLanguage language) const
{
    const Surroundings found{systemText(), QString::fromLatin1(qVersion()), curlVersion(),
                             !m_ports.web.absence().has_value(), m_ports.tools.places()};
    return surroundingsText(found, language);
}

void AboutWindow::showTexts()
{
    const AppLanguage language = m_ports.settings.language.value();
    setWindowTitle(pair(language, u"About Vormel", u"Informazioni su Vormel"));
    m_kind->setText(platformText(PlatformText::kindOfProgram, language));
    m_licence->setText(pair(language, u"© 2026 The Vormel developers\nMIT licence (Expat), without any warranty",
                            u"© 2026 The Vormel developers\nLicenza MIT (Expat), senza alcuna garanzia"));
    m_surroundings->setText(surroundings(language));
    setAccessibleDescription(m_name->text() + u' ' + m_version->text());
}

/// In English, as reports are read by whoever mends the program.
void AboutWindow::copy() const
{
    QGuiApplication::clipboard()->setText(
        u"Vormel %1\n%2\n"_s.arg(QString(programVersion), surroundings(AppLanguage::english)));
}

} // namespace vormel
