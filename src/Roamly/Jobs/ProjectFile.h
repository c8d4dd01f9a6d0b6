// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Document/ProjectStore.h>
#include <Roamly/Jobs/Job.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace Jobs {

/// The file of an open document for an owner that never waits: reading, writing and waiting for another
/// program's lock happen on a worker, from and into copies, while the document goes on. One at a time.
/// Owner's thread.
class ProjectFile {
public:
    enum class Doing { Nothing, Reading, Writing };
    struct State {
        Doing doing = Doing::Nothing;
        /// Another program holds the file.
        bool isWaiting = false;
    };

    enum class Outcome {
        Done,
        Cancelled,
        /// Another program wrote the file meanwhile; nothing was written.
        Conflict,
        Failed,
    };
    struct Ending {
        Outcome outcome = Outcome::Done;
        /// For the user, of a conflict or a failure.
        std::string sentence = {};
    };
    using Ended = std::function<void(const Ending&)>;

    enum class AnothersChange { Refuse, Overwrite };

    /// `changed` is called after each change of the state. The document must outlive this.
    ProjectFile(Executor executor, Document::ProjectDocument& document, std::function<void()> changed = {});

    [[nodiscard]] const State& state() const { return m_state; }
    /// Nothing while the document has no file.
    [[nodiscard]] const std::optional<std::filesystem::path>& path() const { return m_path; }

    /// Whether another program wrote the file since it was read or written here. Asks the disk.
    [[nodiscard]] bool isChangedOnDisk() const;
    /// Whether there is a reason to write, if not one to ask the user.
    [[nodiscard]] bool hasSomethingToWrite() const;

    // Each returns at once, and false when something is being done already. `ended` is called once, when the
    // state is idle again; a file that could not be read leaves the document and its path as they were.

    /// Reads a file into the document, whose file it is from then on.
    bool open(const std::filesystem::path& path, Ended ended);
    /// Reads the document's file again.
    bool reload(Ended ended);
    bool save(AnothersChange anothersChange, Ended ended);
    /// Writes the document to another file, replacing one that is there; that is its file from then on.
    bool saveAs(const std::filesystem::path& path, Ended ended);

    /// Gives up waiting for another program.
    void cancel();

    /// The document goes on under a name without that anything was read: what was recovered after a crash.
    void adopt(const std::filesystem::path& path);

private:
    bool write(const std::filesystem::path& path, bool mustBeUnchanged, Ended ended);
    bool start(Doing doing, Job::Work work, Ended ended);
    void setState(State state);

    Document::ProjectDocument* m_document;
    std::function<void()> m_changed;
    State m_state;
    std::optional<std::filesystem::path> m_path;
    std::optional<Document::ProjectStore::FileVersion> m_version;
    /// The file was of an older layout: identifiers given out on reading last only once it is written.
    bool m_hasNewIdentifiers = false;
    /// Of the present run, told by its landing.
    Ending m_ending;
    Job m_job;
};

} // namespace Jobs
