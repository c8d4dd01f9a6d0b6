// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace Export {

/// What the libraries beneath have to be told once for the whole process; the program does so before it
/// exports a movie or opens music. FFmpeg's libraries would print on standard error what is an exception
/// here. The C library hands blocks of 4 MiB and more back to the system as soon as they are free: photos and
/// frames are blocks of many megabytes that come and go, and left to itself it learns to keep them in its
/// heaps, where smaller things soon stand in their way: 150 MB more for a 4K movie. Owner's thread.
void prepareProcess();

} // namespace Export
