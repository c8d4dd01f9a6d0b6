#pragma once

#include <QIcon>
#include <QString>

namespace Theme {

/// An icon of Roamly's own family by its name ("import", "analyze", "play"…), in the colour of the palette's
/// text and at whatever device pixel ratio it is drawn; a null icon for an unknown name.
[[nodiscard]] QIcon icon(const QString& name);

} // namespace Theme
