// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/CommandLine.h>
#include <Roamly/Platform/ProcessSetup.h>

int main(int argumentCount, char* arguments[]) {
    Platform::prepareProcess();
    return CommandLine::run(argumentCount, arguments);
}
