#pragma once

#include <QPixmap>

class QString;
class QWidget;

namespace vormel {

/// What is seen of a file or group while it is dragged: a small plate with an icon and its name, elided, in the colours
/// and the resolution of the widget.
[[nodiscard]] QPixmap dragPicture(const QString& name, bool isGroup, const QWidget& widget);

} // namespace vormel
