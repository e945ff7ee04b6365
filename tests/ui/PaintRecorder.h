#pragma once

#include <QColor>
#include <QPaintDevice>
#include <QRectF>
#include <QString>

#include <memory>
#include <vector>

namespace vormel::fixtures {

/// Something that can be painted upon and writes down what comes instead of showing it: the texts with their colours,
/// the pixmaps by their keys, and the areas that are filled.
class PaintRecorder final : public QPaintDevice
{
public:
    struct Text
    {
        QString text;
        QColor color;
        bool isBold = false;
        QPointF place; ///< where its line begins
    };
    struct Picture
    {
        qint64 key = 0; ///< equal pixmaps of the cache have equal keys
        QRectF rect;
    };
    struct Shape
    {
        QRectF rect;
        QColor fill;    ///< transparent for an outline
        QColor outline; ///< transparent without one
    };

    explicit PaintRecorder(QSize size);
    ~PaintRecorder() override;

    [[nodiscard]] QPaintEngine* paintEngine() const override;

    std::vector<Text> texts; ///< each as one, also where Qt draws it in pieces
    std::vector<Picture> pictures;
    std::vector<Shape> shapes;

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override;

private:
    class Engine;

    QSize m_size;
    std::unique_ptr<Engine> m_engine;
};

} // namespace vormel::fixtures
