#include <Roamly/CommandLine/CommandLine.h>
#include <Roamly/Platform/ProcessSetup.h>

int main(int argumentCount, char* arguments[]) {
    Platform::prepareProcess();
    return CommandLine::run(argumentCount, arguments);
}
