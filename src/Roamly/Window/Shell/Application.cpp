#include <Roamly/Window/Shell/Application.h>

#include <QApplication>

namespace Shell {

int run(int& argumentCount, char* arguments[]) {
    QApplication application{argumentCount, arguments};
    return 0;
}

} // namespace Shell
