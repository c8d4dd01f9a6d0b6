// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/ProcessSetup.h>
#include <Roamly/Window/Shell/Application.h>

int main(int argumentCount, char* arguments[]) {
    Platform::prepareProcess();
    return Shell::run(argumentCount, arguments);
}
