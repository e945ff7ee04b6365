#include "ui/PaintRecorder.h"

#include <QPaintEngine>
#include <QPainterPath>
#include <QPen>

#include <cmath>

namespace vormel::fixtures {

class PaintRecorder::Engine final : public QPaintEngine
{
public:
    explicit Engine(PaintRecorder& owner)
        : QPaintEngine(AllFeatures)
        , m_owner(owner)
    {}

    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    [[nodiscard]] Type type() const override { return User; }

    void updateState(const QPaintEngineState& now) override
    {
        if (now.state().testFlag(DirtyPen))
            m_pen = now.pen();
        if (now.state().testFlag(DirtyBrush))
            m_brush = now.brush();
    }

    void drawTextItem(const QPointF& point, const QTextItem& item) override
    {
        // A text of several fonts or scripts comes in pieces, one behind the other.
        const bool goesOn = !m_owner.texts.empty() && m_owner.texts.back().color == m_pen.color() &&
                            std::abs(m_textEnd.y() - point.y()) < 0.5 && std::abs(m_textEnd.x() - point.x()) < 0.5;
        if (goesOn)
            m_owner.texts.back().text += item.text();
        else
            m_owner.texts.push_back({item.text(), m_pen.color(), item.font().weight() > QFont::Normal, point});
        m_textEnd = point + QPointF(item.width(), 0);
    }

    void drawPixmap(const QRectF& rect, const QPixmap& pixmap, const QRectF& /*part*/) override
    {
        m_owner.pictures.push_back({pixmap.cacheKey(), rect});
    }

    void drawPath(const QPainterPath& path) override { note(path.boundingRect()); }

    using QPaintEngine::drawPolygon;
    using QPaintEngine::drawRects;

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode /*mode*/) override
    {
        note(QPolygonF(QList<QPointF>(points, points + count)).boundingRect());
    }

    void drawRects(const QRectF* rects, int count) override
    {
        for (int i = 0; i < count; ++i)
            note(rects[i]);
    }

private:
    void note(const QRectF& rect)
    {
        m_owner.shapes.push_back({rect, m_brush.style() == Qt::NoBrush ? QColor(Qt::transparent) : m_brush.color(),
                                  m_pen.style() == Qt::NoPen ? QColor(Qt::transparent) : m_pen.color()});
    }

    PaintRecorder& m_owner;
    QPen m_pen;
    QBrush m_brush;
    QPointF m_textEnd;
};

PaintRecorder::PaintRecorder(QSize size)
    : m_size(size)
    , m_engine(std::make_unique<Engine>(*this))
{}

PaintRecorder::~PaintRecorder() = default;

QPaintEngine* PaintRecorder::paintEngine() const
{
    return m_engine.get();
}

int PaintRecorder::metric(PaintDeviceMetric metric) const
{
    constexpr int dotsPerInch = 96;
    switch (metric) {
    case PdmWidth:
        return m_size.width();
    case PdmHeight:
        return m_size.height();
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return dotsPerInch;
    case PdmDepth:
        return 32;
    default:
        return QPaintDevice::metric(metric);
    }
}

} // namespace vormel::fixtures
