#include "ui/queue/list/RenamePopover.h"

#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "model/ReleaseName.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace vormel {

RenamePopover::RenamePopover(const QString& name, AppLanguage language, QWidget* parent)
    : QFrame(parent, Qt::Popup)
    , m_title(new StyledLabel(StyledLabel::Style::headline, Tint::text, this))
    , m_note(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_draftName(new QLineEdit(name, this))
    , m_removeTags(new SheetButton(this))
    , m_dotsToSpaces(new SheetButton(this))
    , m_cancel(new SheetButton(this))
    , m_save(new SheetButton(this))
{
    setObjectName(u"renamePopover"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameStyle(QFrame::StyledPanel);
    setUpParts();
    setTexts(language);
    layOut();
    connect(m_removeTags, &QPushButton::clicked, this, &RenamePopover::removeTailTags);
    connect(m_dotsToSpaces, &QPushButton::clicked, this, &RenamePopover::turnDotsToSpaces);
    connect(m_cancel, &QPushButton::clicked, this, &RenamePopover::close);
    connect(m_save, &QPushButton::clicked, this, &RenamePopover::save);
    connect(m_draftName, &QLineEdit::returnPressed, m_save, &QPushButton::click);
    connect(m_draftName, &QLineEdit::textChanged, this,
            [this](const QString& draft) { m_save->setEnabled(!draft.trimmed().isEmpty()); });
}

void RenamePopover::setUpParts()
{
    m_title->setObjectName(u"renameTitle"_s);
    m_note->setObjectName(u"renameNote"_s);
    m_note->setWordWrap(true);
    m_draftName->setObjectName(u"draftName"_s);
    m_draftName->setTextMargins(4, 3, 4, 3);
    m_draftName->selectAll();
    m_removeTags->setObjectName(u"removeTailTags"_s);
    m_dotsToSpaces->setObjectName(u"dotsToSpaces"_s);
    m_cancel->setObjectName(u"cancelRename"_s);
    m_save->setObjectName(u"saveName"_s);
    m_save->setDefault(true);
    m_save->setEnabled(!m_draftName->text().trimmed().isEmpty());
}

void RenamePopover::layOut()
{
    constexpr int width = 400;
    auto* tools = new QHBoxLayout;
    tools->addWidget(m_removeTags);
    tools->addWidget(m_dotsToSpaces);
    tools->addStretch();
    auto* answers = new QHBoxLayout;
    answers->addStretch();
    answers->addWidget(m_cancel);
    answers->addWidget(m_save);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 14, 16, 14);
    column->setSpacing(10);
    column->addWidget(m_title);
    column->addWidget(m_note);
    column->addWidget(m_draftName);
    column->addLayout(tools);
    column->addSpacing(2);
    column->addLayout(answers);
    setMinimumWidth(width);
}

void RenamePopover::setTexts(AppLanguage language)
{
    const QString title = pair(language, u"Rename group", u"Rinomina gruppo");
    setAccessibleName(title);
    m_title->setText(title);
    m_note->setText(
        pair(language, u"Used as the folder and extracted file name. The extension (.mkv/.mp4) is kept automatically.",
             u"Usato come nome della cartella e del file estratto. L'estensione (.mkv/.mp4) è mantenuta "
             u"automaticamente."));
    m_draftName->setAccessibleName(title);
    m_removeTags->setText(pair(language, u"Remove tail tags", u"Rimuovi tag finali"));
    m_removeTags->setToolTip(pair(language, u"Trim release info (resolution, codec, source, group…) from the end",
                                  u"Rimuove le info di release (risoluzione, codec, sorgente, gruppo…) dalla fine"));
    m_dotsToSpaces->setText(pair(language, u"Dots → spaces", u"Punti → spazi"));
    m_cancel->setText(pair(language, u"Cancel", u"Annulla"));
    m_save->setText(pair(language, u"Save", u"Salva"));
    for (QPushButton* button : {m_removeTags, m_dotsToSpaces, m_cancel, m_save})
        button->setAccessibleName(button->text());
}

void RenamePopover::openBelow(const QWidget& widget, const QRect& part)
{
    adjustSize();
    resize(width(), layout()->heightForWidth(width()));
    const QRect room = widget.screen()->availableGeometry();
    const QPoint below = widget.mapToGlobal(part.bottomLeft() + QPoint((part.width() - width()) / 2, 2));
    const int above = widget.mapToGlobal(part.topLeft()).y() - height() - 2;
    const bool fitsBelow = below.y() + height() <= room.bottom();
    const int left = qBound(room.left(), below.x(), qMax(room.left(), room.right() + 1 - width()));
    move(left, fitsBelow ? below.y() : qMax(room.top(), above));
    show();
    m_draftName->setFocus(Qt::PopupFocusReason);
}

void RenamePopover::removeTailTags()
{
    // A group's name has no extension that would have to stay.
    const QString name = stripReleaseTags(m_draftName->text());
    if (!name.isEmpty())
        m_draftName->setText(name);
}

void RenamePopover::turnDotsToSpaces()
{
    static const QRegularExpression blanks(u" {2,}"_s);
    QString name = m_draftName->text().replace(u'.', u' ');
    m_draftName->setText(name.replace(blanks, u" "_s).trimmed());
}

void RenamePopover::save()
{
    const QString name = m_draftName->text();
    close();
    Q_EMIT saved(name);
}

} // namespace vormel
