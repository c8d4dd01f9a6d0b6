// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/History.h>

#include <utility>

namespace Document {

std::optional<std::string> History::undoName() const {
    return m_done.empty() ? std::nullopt : std::optional{m_done.back().name.text};
}

std::optional<std::string> History::redoName() const {
    return m_undone.empty() ? std::nullopt : std::optional{m_undone.back().name.text};
}

const ProjectDifference& History::undo() {
    seal();
    Step& step = m_undone.emplace_back(std::move(m_done.back()));
    m_done.pop_back();
    step.difference = inverted(std::move(step.difference));
    return step.difference;
}

const ProjectDifference& History::redo() {
    seal();
    Step& step = m_done.emplace_back(std::move(m_undone.back()));
    m_undone.pop_back();
    step.difference = inverted(std::move(step.difference));
    return step.difference;
}

const ProjectDifference& History::add(const EditName& name, ProjectDifference difference) {
    for (const Step& step : m_undone)
        m_bytes -= step.bytes;
    m_undone.clear();
    const std::size_t bytes = difference.bytes();
    m_done.push_back({name, std::move(difference), bytes});
    m_bytes += bytes;
    m_isSealed = false;
    forgetOldest();
    return m_done.back().difference;
}

bool History::continues(const EditName& name) const {
    return !m_isSealed && !m_done.empty() && !name.mergeKey.empty() &&
           m_done.back().name.mergeKey == name.mergeKey;
}

ProjectDifference History::takeNewest() {
    seal();
    ProjectDifference difference = std::move(m_done.back().difference);
    m_bytes -= m_done.back().bytes;
    m_done.pop_back();
    return difference;
}

void History::clear() {
    seal();
    m_done.clear();
    m_undone.clear();
    m_bytes = 0;
}

void History::refresh(const ProjectModel::PhotoRefreshes& refreshes) {
    m_bytes = 0;
    for (std::deque<Step>* steps : {&m_done, &m_undone}) {
        for (Step& step : *steps) {
            for (auto* placed : {&step.difference.removed, &step.difference.inserted}) {
                for (ProjectDifference::PlacedPhoto& one : *placed)
                    refreshes.applyTo(one.photo);
            }
            for (ProjectDifference::ChangedPhoto& change : step.difference.changed) {
                refreshes.applyTo(change.before);
                refreshes.applyTo(change.after);
            }
            step.bytes = step.difference.bytes();
            m_bytes += step.bytes;
        }
    }
    forgetOldest();
}

void History::forgetOldest() {
    while (m_bytes > m_limit && m_done.size() > 1) {
        m_bytes -= m_done.front().bytes;
        m_done.pop_front();
    }
}

} // namespace Document
