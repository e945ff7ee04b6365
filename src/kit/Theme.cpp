#include "kit/Theme.h"

#include "kit/Contrast.h"

namespace vormel {

namespace {

struct StatusColor
{
    QRgb onLight;
    QRgb onDark;
};

constexpr StatusColor blue{0xff1667c9, 0xff5eaeff};
constexpr StatusColor orange{0xffa85000, 0xffffb14a};
constexpr StatusColor green{0xff1c7a3a, 0xff55d17a};
constexpr StatusColor red{0xffc4281f, 0xffff7d73};
constexpr StatusColor cyan{0xff0d7f9f, 0xff4fc9ea};
constexpr StatusColor purple{0xff8a3fc4, 0xffc98cf5};
constexpr StatusColor teal{0xff0b7f80, 0xff4fc7c4};
constexpr StatusColor yellow{0xffa07000, 0xfff2cf45};
constexpr StatusColor indigo{0xff4a48c8, 0xff9a98ff};
constexpr StatusColor pink{0xffc22a6c, 0xffff7fb0};
constexpr StatusColor mint{0xff07885f, 0xff63e0b8};
constexpr StatusColor gray{0xff6a6a70, 0xffa6a6ac};
constexpr StatusColor beer{0xffb87800, 0xffb87800};

} // namespace

Theme::Theme(const QPalette& palette, QPalette::ColorGroup group)
    : m_palette(palette)
    , m_group(group)
{}

bool Theme::isDark() const
{
    return m_palette.color(m_group, QPalette::Base).lightness() < m_palette.color(m_group, QPalette::Text).lightness();
}

QColor Theme::towardsBase(double share) const
{
    return mixed(m_palette.color(m_group, QPalette::Text), m_palette.color(m_group, QPalette::Base), share);
}

/// The desktop's, as far as texts can be read on it; it stands out from what it lies on as far as its text allows.
QColor Theme::highlight() const
{
    const QColor text = m_palette.color(m_group, QPalette::HighlightedText);
    const QColor base = m_palette.color(m_group, QPalette::Base);
    const QColor window = m_palette.color(m_group, QPalette::Window);
    const QColor chosen = m_palette.color(m_group, QPalette::Highlight);
    const QColor away = contrast(text, Qt::black) > contrast(text, Qt::white) ? Qt::black : Qt::white;
    const QColor readable = standingOut(chosen, away, {text}, readableContrast);
    const QColor visible = standingOut(readable, text, {base, window}, visibleContrast);
    return contrast(visible, text) >= readableContrast ? visible : readable;
}

/// The highlight's colour where it is no ground.
QColor Theme::accent() const
{
    constexpr double spare = 1.5; // its grounds may be tinted with it
    QList<QColor> grounds;
    for (const QPalette::ColorRole ground : {QPalette::Base, QPalette::Window, QPalette::Button})
        grounds << m_palette.color(m_group, ground);
    return standingOut(m_palette.color(m_group, QPalette::Highlight), m_palette.color(m_group, QPalette::Text), grounds,
                       readableContrast + spare);
}

// NOLINTNEXTLINE(readability-function-size): a table
QColor Theme::color(Tint tint) const
{
    const auto status = [this](const StatusColor& color) {
        return QColor::fromRgb(isDark() ? color.onDark : color.onLight);
    };
    switch (tint) {
    case Tint::text:
        return m_palette.color(m_group, QPalette::Text);
    case Tint::secondary:
        return towardsBase(0.30);
    case Tint::tertiary:
        return towardsBase(0.42);
    case Tint::highlight:
        return highlight();
    case Tint::highlightedText:
        return m_palette.color(m_group, QPalette::HighlightedText);
    case Tint::accent:
        return accent();
    case Tint::blue:
        return status(blue);
    case Tint::orange:
        return status(orange);
    case Tint::green:
        return status(green);
    case Tint::red:
        return status(red);
    case Tint::cyan:
        return status(cyan);
    case Tint::purple:
        return status(purple);
    case Tint::teal:
        return status(teal);
    case Tint::yellow:
        return status(yellow);
    case Tint::indigo:
        return status(indigo);
    case Tint::pink:
        return status(pink);
    case Tint::mint:
        return status(mint);
    case Tint::gray:
        return status(gray);
    case Tint::beer:
        return status(beer);
    case Tint::hairline:
        return towardsBase(0.90);
    case Tint::track:
        return towardsBase(0.84);
    case Tint::hover:
        return towardsBase(0.96);
    }
    Q_UNREACHABLE();
}

} // namespace vormel
