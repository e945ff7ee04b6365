#include "ui/settings/BrewInstallRow.h"

#include "kit/Card.h"
#include "kit/CodeLabel.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "kit/TextColumn.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

BrewInstallRow::BrewInstallRow(const QString& name, QWidget* parent)
    : QWidget(parent)
    , m_command(new CodeLabel(this))
    , m_description(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_note(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_open(new SheetButton(u"Open in Terminal"_s, this)) // the same in both languages
{
    setObjectName(name);
    m_command->setObjectName(u"installCommand"_s);
    m_description->setObjectName(u"installDescription"_s);
    m_note->setObjectName(u"installNote"_s);
    m_note->hide();
    m_open->setObjectName(u"openInTerminal"_s);
    m_command->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, Card::endOfRow, 0);
    row->setSpacing(16);
    row->addLayout(textColumn({m_command, m_description, m_note}), 1);
    row->addWidget(m_open, 0, Qt::AlignVCenter);
    connect(m_open, &QPushButton::clicked, this, [this] { Q_EMIT asked(command()); });
}

void BrewInstallRow::setCommand(const QString& command, const QString& description)
{
    m_command->setText(command);
    m_command->setAccessibleName(command);
    m_description->setText(description);
    m_open->setAccessibleName(m_open->text() + u": "_s + command);
    m_open->setAccessibleDescription(description);
}

void BrewInstallRow::setNote(const QString& note)
{
    m_note->setText(note);
    m_note->setHidden(note.isEmpty());
}

QString BrewInstallRow::command() const
{
    return m_command->text();
}

} // namespace vormel
