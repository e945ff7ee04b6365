#include "ui/sheets/ArchivePasswordSheetView.h"

#include "kit/BoundText.h"
#include "kit/GlyphLabel.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"

#include <QHBoxLayout>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace vormel {

ArchivePasswordSheetView::ArchivePasswordSheetView(const PendingExtractionPassword& pending,
                                                   const AppSettings& settings, QWidget* parent)
    : QDialog(parent)
    , m_pending(pending)
    , m_title(new StyledLabel(StyledLabel::Style::title, Tint::text, this))
    , m_archive(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_wrong(new StyledLabel(StyledLabel::Style::body, Tint::red, this))
    , m_password(new QLineEdit(this))
    , m_extract(new SheetButton(this))
    , m_cancel(new SheetButton(this))
{
    setObjectName(u"archivePasswordSheet"_s);
    setWindowModality(Qt::WindowModal);
    setUpParts();
    layOut();
    connect(m_password, &QLineEdit::textChanged, m_extract,
            [this](const QString& text) { m_extract->setEnabled(!text.isEmpty()); });
    connect(m_extract, &QPushButton::clicked, this, &ArchivePasswordSheetView::confirm);
    connect(m_cancel, &QPushButton::clicked, this, &ArchivePasswordSheetView::reject);
    bindTexts(settings);
    m_password->setFocus();
}

void ArchivePasswordSheetView::setUpParts()
{
    constexpr int fieldWidth = 280;
    m_title->setObjectName(u"passwordTitle"_s);
    m_archive->setObjectName(u"archiveName"_s);
    m_archive->setTextFormat(Qt::PlainText);
    m_archive->setAlignment(Qt::AlignCenter);
    m_wrong->setObjectName(u"wrongPassword"_s);
    m_wrong->setVisible(m_pending.wasWrongPassword);
    m_password->setObjectName(u"archivePassword"_s);
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setPlaceholderText(u"Password"_s); // in both languages
    m_password->setAccessibleName(m_password->placeholderText());
    m_password->setTextMargins(4, 3, 4, 3);
    m_password->setFixedWidth(fieldWidth);
    m_extract->setObjectName(u"extract"_s);
    m_extract->setDefault(true);
    m_extract->setEnabled(false);
    m_cancel->setObjectName(u"cancelPassword"_s);
    m_cancel->setAutoDefault(false);
}

void ArchivePasswordSheetView::layOut()
{
    constexpr int iconSize = 34;
    constexpr int width = 380;
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_extract);
    buttons->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(32, 24, 32, 24);
    column->setSpacing(16);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(new GlyphLabel(Glyph::lockFill, Tint::secondary, iconSize, this), 0, Qt::AlignHCenter);
    column->addWidget(m_title, 0, Qt::AlignHCenter);
    column->addWidget(m_archive);
    column->addWidget(m_wrong, 0, Qt::AlignHCenter);
    column->addWidget(m_password, 0, Qt::AlignHCenter);
    column->addLayout(buttons);
    m_archive->setFixedWidth(width);
}

void ArchivePasswordSheetView::bindTexts(const AppSettings& settings)
{
    const TextPair title = m_pending.wasWrongPassword
                               ? TextPair{u"Wrong Password", u"Password errata"}
                               : TextPair{u"Archive Password Required", u"Password archivio richiesta"};
    bindText(this, &QWidget::setWindowTitle, settings, title);
    bindText(m_title, &QLabel::setText, settings, title);
    bindText(m_wrong, &QLabel::setText, settings,
             {u"The password you entered was incorrect. Try again.", u"La password inserita non è corretta. Riprova."});
    bindText(m_extract, &QPushButton::setText, settings, {u"Extract", u"Estrai"});
    bindText(m_cancel, &QPushButton::setText, settings, {u"Cancel", u"Annulla"});
}

void ArchivePasswordSheetView::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    showArchiveName();
}

void ArchivePasswordSheetView::showArchiveName()
{
    const QFontMetrics metrics(m_archive->font());
    m_archive->setText(metrics.elidedText(m_pending.archiveName, Qt::ElideMiddle, m_archive->width()));
}

void ArchivePasswordSheetView::confirm()
{
    if (m_password->text().isEmpty())
        return;
    const QString password = m_password->text();
    accept();
    Q_EMIT confirmed(password);
}

} // namespace vormel
