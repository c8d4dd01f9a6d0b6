#include <Roamly/Platform/ProcessSetup.h>
#include <Roamly/Window/Shell/Application.h>

int main(int argumentCount, char* arguments[]) {
    Platform::prepareProcess();
    return Shell::run(argumentCount, arguments);
}
