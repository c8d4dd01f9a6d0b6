#include <Roamly/Window/Shell/Application.h>

int main(int argumentCount, char* arguments[]) {
    return Shell::run(argumentCount, arguments);
}
