#include "ui/sheets/LinkForm.h"

#include "kit/BoundText.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "text/HttpLinks.h"
#include "ui/sheets/CountLabel.h"
#include "ui/sheets/LinkEditor.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString joined(const std::vector<Link>& links)
{
    QStringList lines;
    for (const Link& link : links)
        lines << link.absoluteString();
    return lines.join(u'\n');
}

QString directText(std::size_t count, AppLanguage language)
{
    const QString ending = count == 1 ? QString() : pair(language, u"s", u"i");
    return QString::number(count) + pair(language, u" direct link", u" link diretto") + ending;
}

QString containerText(std::size_t count, AppLanguage language)
{
    const QString ending = count == 1 ? QString() : pair(language, u"s", u"");
    return QString::number(count) + u" container"_s + ending;
}

} // namespace

LinkForm::LinkForm(AppSettings& settings, const ResolverTables& resolvers, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_resolvers(resolvers)
    , m_title(new StyledLabel(StyledLabel::Style::title, Tint::text, this))
    , m_prompt(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_editor(new LinkEditor(this))
    , m_directCount(new CountLabel(Glyph::arrowDownCircleFill, Tint::blue, u"directCount"_s, this))
    , m_containerCount(new CountLabel(Glyph::archiveboxFill, Tint::orange, u"containerCount"_s, this))
    , m_passwordBlock(new QWidget(this))
    , m_passwordLabel(new CountLabel(Glyph::lock, Tint::secondary, u"passwordLabel"_s, m_passwordBlock))
    , m_password(new QLineEdit(m_passwordBlock))
    , m_cancel(new SheetButton(this))
    , m_add(new SheetButton(this))
{
    setUpParts();
    layOut();
    connectParts();
    bindTexts();
}

void LinkForm::setUpParts()
{
    m_title->setObjectName(u"addTitle"_s);
    m_prompt->setObjectName(u"addPrompt"_s);
    m_editor->setObjectName(u"linkEditor"_s);
    m_editor->setPlaceholderText(u"https://..."_s);
    m_password->setObjectName(u"containerPassword"_s);
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setTextMargins(4, 2, 4, 2);
    m_cancel->setObjectName(u"cancelAdd"_s);
    m_cancel->setAutoDefault(false);
    m_add->setObjectName(u"add"_s);
    m_add->setDefault(true);
}

void LinkForm::layOut()
{
    auto* counts = new QHBoxLayout;
    counts->setSpacing(14);
    counts->addWidget(m_directCount);
    counts->addWidget(m_containerCount);
    counts->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_add);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 18);
    column->setSpacing(10);
    column->addWidget(m_title);
    column->addWidget(m_prompt);
    column->addWidget(m_editor, 1);
    column->addLayout(counts);
    column->addWidget(makePasswordBlock());
    column->addSpacing(4);
    column->addLayout(buttons);
}

QWidget* LinkForm::makePasswordBlock()
{
    m_passwordBlock->setObjectName(u"passwordBlock"_s);
    auto* column = new QVBoxLayout(m_passwordBlock);
    column->setContentsMargins(0, 4, 0, 0);
    column->setSpacing(6);
    column->addWidget(m_passwordLabel, 0, Qt::AlignLeading);
    column->addWidget(m_password);
    return m_passwordBlock;
}

void LinkForm::connectParts()
{
    const auto* add = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), m_editor);
    connect(add, &QShortcut::activated, m_add, &QPushButton::click);
    connect(m_editor, &LinkEditor::textChanged, this, &LinkForm::readText);
    connect(m_cancel, &QPushButton::clicked, this, &LinkForm::cancelled);
    connect(m_add, &QPushButton::clicked, this, &LinkForm::accepted);
}

void LinkForm::bindTexts()
{
    constexpr TextPair prompt{u"Paste one or more links, one per line:", u"Incolla uno o più link, uno per riga:"};
    constexpr TextPair password{u"Container password (optional)", u"Password container (opzionale)"};
    bindText(m_title, &QLabel::setText, m_settings, {u"Add URLs", u"Aggiungi URL"});
    bindText(m_prompt, &QLabel::setText, m_settings, prompt);
    bindText(m_editor, &QWidget::setAccessibleName, m_settings, prompt);
    bindText(m_passwordLabel, &CountLabel::setText, m_settings, password);
    bindText(m_password, &QWidget::setAccessibleName, m_settings, password);
    bindText(m_password, &QLineEdit::setPlaceholderText, m_settings,
             {u"Leave blank if not protected", u"Lascia vuoto se non protetto"});
    bindText(m_cancel, &QPushButton::setText, m_settings, {u"Cancel", u"Annulla"});
    bindText(m_add, &QPushButton::setText, m_settings, {u"Add", u"Aggiungi"});
    followLanguage(this, m_settings, [this] { showCounts(); });
}

void LinkForm::prefill()
{
    if (m_editor->toPlainText().isEmpty())
        m_editor->fill(joined(httpLinks(QGuiApplication::clipboard()->text())));
    m_editor->setFocus();
}

void LinkForm::append(const std::vector<Link>& links)
{
    if (m_editor->toPlainText().isEmpty())
        m_editor->fill(joined(links));
    else
        m_editor->append(joined(links));
}

void LinkForm::readText()
{
    m_links = LinkPaste(m_editor->toPlainText(), m_resolvers);
    showCounts();
}

void LinkForm::showCounts()
{
    const AppLanguage language = m_settings.language.value();
    const std::size_t direct = m_links.directURLs().size();
    const std::size_t containers = m_links.containerURLs().size();
    m_directCount->setText(directText(direct, language));
    m_directCount->setVisible(direct > 0);
    m_containerCount->setText(containerText(containers, language));
    m_containerCount->setVisible(containers > 0);
    m_passwordBlock->setVisible(containers > 0);
    m_add->setEnabled(!m_links.validURLs().empty());
}

std::optional<QString> LinkForm::password() const
{
    return m_password->text().isEmpty() ? std::nullopt : std::optional(m_password->text());
}

} // namespace vormel
