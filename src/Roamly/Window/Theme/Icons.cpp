#include <Roamly/Window/Theme/Icons.h>

namespace Theme {

QIcon icon(const QString& name) {
    return QIcon{QStringLiteral(":/icons/%1.svg").arg(name)};
}

} // namespace Theme
