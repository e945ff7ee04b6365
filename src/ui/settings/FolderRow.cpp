#include "ui/settings/FolderRow.h"

#include "engine/DownloadManager.h"
#include "platform/desktop/UrlOpener.h"
#include "ui/kit/GlyphIcon.h"
#include "ui/kit/PlatformTexts.h"
#include "ui/kit/SheetButton.h"
#include "ui/kit/StyledLabel.h"
#include "ui/kit/TextColumn.h"
#include "ui/settings/PathLabel.h"
#include "ui/settings/SettingsSection.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QToolButton>
#include <QUrl>

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
    m_text->setObjectName(QStringLiteral("folderLabel"));
    m_path->setObjectName(QStringLiteral("folderPath"));
    m_open->setObjectName(QStringLiteral("openFolder"));
    m_choose->setObjectName(QStringLiteral("chooseFolder"));
    m_reset->setObjectName(QStringLiteral("resetFolder"));
    layOut();
    connectParts();
    retranslate();
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
    row->setContentsMargins(0, 0, SettingsSection::endOfRow, 0);
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
    connect(&settings(), &AppSettings::languageSet, this, &FolderRow::retranslate);
}

void FolderRow::choose()
{
    auto* dialog = new QFileDialog(this, {}, setting().value());
    dialog->setObjectName(QStringLiteral("folderDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    const auto retranslate = [this, dialog] {
        const AppLanguage language = settings().language.value();
        dialog->setWindowTitle(m_label.in(language));
        dialog->setLabelText(QFileDialog::Accept, pair(language, u"Select", u"Seleziona"));
    };
    connect(&settings(), &AppSettings::languageSet, dialog, retranslate);
    retranslate();
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) { setting().set(path); });
    dialog->open();
}

void FolderRow::showFolder()
{
    m_path->setPath(setting().value());
}

void FolderRow::retranslate()
{
    const AppLanguage language = settings().language.value();
    const QString label = m_label.in(language);
    const auto named = [&label](const QString& action) { return label + QStringLiteral(": ") + action; };
    m_text->setText(label);
    m_choose->setText(pair(language, u"Choose...", u"Scegli..."));
    m_choose->setAccessibleName(named(m_choose->text()));
    m_reset->setText(pair(language, u"Reset", u"Ripristina"));
    m_reset->setAccessibleName(named(m_reset->text()));
    m_open->setToolTip(platformText(PlatformText::openInViewer, language));
    m_open->setAccessibleName(named(m_open->toolTip()));
}

} // namespace vormel
