#pragma once

#include <QProxyStyle>

namespace vormel {

/// The desktop's style, with what most leave to the eyes of the young: selected texts and hints can be read, fields
/// have an edge, and a ring shows which control the keyboard works on. For the whole application, which takes it over.
class ReadableStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
};

} // namespace vormel
