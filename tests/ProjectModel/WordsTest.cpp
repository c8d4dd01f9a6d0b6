// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/AIProvider.h>
#include <ProjectModel/Words.h>

#include <gtest/gtest.h>

namespace Words = ProjectModel::Words;

TEST(WordsTest, TheComputerIsYourComputerAndThisComputer) {
    EXPECT_EQ(Words::privacyTitle, "Privacy: photos leave your computer");
    EXPECT_EQ(Words::privacyMessageEnd,
              " captions in the cloud. Each selected photo is uploaded to generate its caption — it does not "
              "stay on your computer. Built-in and Ollama caption locally instead.");
    EXPECT_EQ(Words::providersNote,
              "Built-in and Ollama caption on this computer. OpenRouter sends each photo to the cloud.");
    EXPECT_EQ(Words::cloudNote,
              "Privacy: OpenRouter is a **cloud** service. Every photo you caption is uploaded to OpenRouter "
              "and the model provider you choose — the images leave your computer. Don’t use it for photos "
              "you want to keep private; use Built-in or Ollama for that.");
}

TEST(WordsTest, TheProviderOnTheComputerIsBuiltInWhileFilesKeepItsRawValue) {
    EXPECT_EQ(displayName(ProjectModel::AIProvider::apple), "Built-in (on-device)");
    EXPECT_EQ(rawValue(ProjectModel::AIProvider::apple), "apple");
    EXPECT_EQ(Words::builtInUnavailable, "The built-in captions are not available on this computer.");
}

TEST(WordsTest, AlbumsAreThoseOfAPhotoLibrary) {
    EXPECT_EQ(Words::importHelp, "Import photos from a folder or a photo-library album");
    EXPECT_EQ(Words::emptyProject, "Import a folder or a photo-library album to get started.");
}

TEST(WordsTest, AMissingAndAClosedPhotoLibraryAreTwoAlerts) {
    EXPECT_EQ(Words::noPhotoLibraryTitle, "No photo library found");
    EXPECT_EQ(Words::noPhotoLibraryMessage,
              "Roamly looks for the libraries of Shotwell and digiKam and found none.");
    EXPECT_EQ(Words::noPhotoLibraryButton, "OK");
    EXPECT_EQ(Words::photoLibraryDeniedTitle, "Photo library access is off");
    EXPECT_EQ(
        Words::photoLibraryDeniedMessage("/home/ana/Pictures"),
        "Roamly can’t read your photo library because access to “/home/ana/Pictures” was denied. Change "
        "the folder’s permissions, then try importing again.");
}

TEST(WordsTest, TheFileBrowserIsFiles) {
    EXPECT_EQ(Words::showInFiles, "Show in Files");
}
