#include "ui/settings/FolderRow.h"

#include "engine/DownloadManager.h"
#include "kit/BoundText.h"
#include "kit/Card.h"
#include "kit/GlyphIcon.h"
#include "kit/PathLabel.h"
#include "kit/PlatformTexts.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "kit/TextColumn.h"
#include "platform/desktop/UrlOpener.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QToolButton>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace vormel {

FolderRow::FolderRow(const ViewPorts& ports, Setting<QString> AppSettings::*setting, const QString& name,
                     const TextPair& label, QWidget* parent)
    : QWidget(parent)
    , m_ports(ports)
    , m_setting(setting)
    , m_label(label)
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
    , m_path(new PathLabel(this))
    , m_open(new QToolButton(this))
    , m_choose(new SheetButton(this))
    , m_reset(new SheetButton(this))
{
    setObjectName(name);
    m_text->setObjectName(u"folderLabel"_s);
    m_path->setObjectName(u"folderPath"_s);
    m_open->setObjectName(u"openFolder"_s);
    m_choose->setObjectName(u"chooseFolder"_s);
    m_reset->setObjectName(u"resetFolder"_s);
    layOut();
    connectParts();
    followLanguage(this, settings(), [this] { showTexts(); });
    showFolder();
}

AppSettings& FolderRow::settings() const
{
    return m_ports.manager.settings();
}

void FolderRow::layOut()
{
    m_open->setIcon(glyphIcon(Glyph::folder, Tint::secondary));
    m_open->setAutoRaise(true);
    m_open->setFocusPolicy(Qt::StrongFocus);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, Card::endOfRow, 0);
    row->setSpacing(8);
    row->addLayout(textColumn({m_text, m_path}), 1);
    row->addWidget(m_open);
    row->addWidget(m_choose);
    row->addWidget(m_reset);
}

void FolderRow::connectParts()
{
    connect(m_open, &QToolButton::clicked, this,
            [this] { m_ports.urlOpener.open(QUrl::fromLocalFile(setting().value())); });
    connect(m_choose, &QPushButton::clicked, this, &FolderRow::choose);
    connect(m_reset, &QPushButton::clicked, this, [this] { setting().set(m_ports.downloadsFolder); });
    connect(&settings(), &AppSettings::changed, this, &FolderRow::showFolder);
}

void FolderRow::choose()
{
    auto* dialog = new QFileDialog(this, {}, setting().value());
    dialog->setObjectName(u"folderDialog"_s);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    bindText(dialog, &QWidget::setWindowTitle, settings(), m_label);
    followLanguage(dialog, settings(), [this, dialog] {
        dialog->setLabelText(QFileDialog::Accept, pair(settings().language.value(), u"Select", u"Seleziona"));
    });
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) { setting().set(path); });
    dialog->open();
}

void FolderRow::showFolder()
{
    m_path->setPath(setting().value());
}

void FolderRow::showTexts()
{
    const AppLanguage language = settings().language.value();
    const QString label = m_label.in(language);
    const auto named = [&label](const QString& action) { return label + u": "_s + action; };
    m_text->setText(label);
    m_choose->setText(pair(language, u"Choose...", u"Scegli..."));
    m_choose->setAccessibleName(named(m_choose->text()));
    m_reset->setText(pair(language, u"Reset", u"Ripristina"));
    m_reset->setAccessibleName(named(m_reset->text()));
    m_open->setToolTip(platformText(PlatformText::openInViewer, language));
    m_open->setAccessibleName(named(m_open->toolTip()));
}

} // namespace vormel
