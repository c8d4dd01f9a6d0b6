#include <Roamly/CommandLine/CommandLine.h>

int main(int argumentCount, char* arguments[]) {
    return CommandLine::run(argumentCount, arguments);
}
