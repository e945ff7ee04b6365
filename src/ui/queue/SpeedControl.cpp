#include "ui/queue/SpeedControl.h"

#include "engine/DownloadManager.h"
#include "kit/BoundText.h"
#include "kit/GlyphLabel.h"
#include "kit/StyledLabel.h"
#include "text/ByteCount.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QSignalBlocker>

#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

struct Cap
{
    QStringView text;
    qint64 kilobytes = 0;
};

constexpr std::array<Cap, 7> caps{{{u"512 KB/s", 512},
                                   {u"1 MB/s", 1024},
                                   {u"2 MB/s", 2048},
                                   {u"5 MB/s", 5120},
                                   {u"10 MB/s", 10240},
                                   {u"20 MB/s", 20480},
                                   {u"50 MB/s", 51200}}};

/// What is slower is a trickle that would only flicker.
constexpr double minShown = 100.0;

} // namespace

SpeedControl::SpeedControl(DownloadManager& manager, QWidget* parent)
    : QWidget(parent)
    , m_manager(manager)
    , m_speed(new StyledLabel(StyledLabel::Style::digits, Tint::secondary, this))
    , m_cap(new QComboBox(this))
{
    layOut();
    followTransfers();
    connect(&manager.settings(), &AppSettings::maxDownloadSpeedSet, this, &SpeedControl::fillCaps);
    connect(m_cap, &QComboBox::activated, this, &SpeedControl::chooseCap);
    bindTexts(manager.settings());
    showSpeed();
}

void SpeedControl::followTransfers()
{
    connect(&m_manager, &DownloadManager::totalSpeedChanged, this, &SpeedControl::showSpeed);
    connect(&m_manager, &DownloadManager::itemChanged, this, [this](const ItemId& id, ItemField field) {
        if (field == ItemField::status)
            noteStatus(id);
    });
    connect(&m_manager, &DownloadManager::itemsRemoved, this, [this](const QSet<ItemId>& ids) {
        m_downloading.subtract(ids);
        showSpeed();
    });
    for (const ItemPtr& item : m_manager.items())
        noteStatus(item->id());
}

void SpeedControl::noteStatus(const ItemId& id)
{
    const ItemPtr item = m_manager.item(id);
    const bool isDownloading = item && item->status() == DownloadStatus::downloading;
    if (isDownloading == m_downloading.contains(id))
        return;
    if (isDownloading)
        m_downloading.insert(id);
    else
        m_downloading.remove(id);
    showSpeed();
}

void SpeedControl::layOut()
{
    constexpr int minReadOutWidth = 64;
    constexpr int iconSize = 18;
    m_speed->setObjectName(u"totalSpeed"_s);
    m_speed->setAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
    // Wide enough for the longest figure, so that the controls beside it stand still.
    m_speed->setMinimumWidth(qMax(minReadOutWidth, m_speed->fontMetrics().horizontalAdvance(u"999.99 MB/s"_s)));
    m_cap->setObjectName(u"speedCap"_s);
    m_cap->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(m_speed);
    row->addWidget(new GlyphLabel(Glyph::gauge, Tint::secondary, iconSize, this));
    row->addWidget(m_cap);
}

void SpeedControl::bindTexts(const AppSettings& settings)
{
    constexpr TextPair name{u"Current total speed / global speed cap", u"Velocità totale attuale / limite globale"};
    bindText(m_cap, &QWidget::setAccessibleName, settings, name);
    // The name of a combo box is its value for some screen readers.
    bindText(m_cap, &QWidget::setAccessibleDescription, settings, name);
    bindText(m_cap, &QWidget::setToolTip, settings, name);
    bindText(m_speed, &QWidget::setToolTip, settings, name);
    followLanguage(this, settings, [this] { fillCaps(); });
}

void SpeedControl::showSpeed()
{
    const double speed = m_manager.totalSpeedBytesPerSec();
    m_speed->setText(m_downloading.isEmpty() || !(speed > minShown) ? QString() : speedText(speed));
}

void SpeedControl::fillCaps()
{
    const QSignalBlocker silence(m_cap);
    m_cap->clear();
    m_cap->addItem(pair(m_manager.settings().language.value(), u"Unlimited", u"Illimitata"),
                   QVariant::fromValue<qint64>(0));
    for (const Cap& cap : caps)
        m_cap->addItem(cap.text.toString(), cap.kilobytes);
    showCap();
}

void SpeedControl::showCap()
{
    const qint64 kilobytes = m_manager.settings().maxDownloadSpeedKBps.value();
    if (m_cap->findData(kilobytes) < 0)
        m_cap->addItem(u"%1 KB/s"_s.arg(kilobytes), kilobytes);
    m_cap->setCurrentIndex(m_cap->findData(kilobytes));
}

void SpeedControl::chooseCap(int row)
{
    m_manager.settings().maxDownloadSpeedKBps.set(m_cap->itemData(row).toLongLong());
}

} // namespace vormel
