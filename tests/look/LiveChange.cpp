// SPDX-License-Identifier: Apache-2.0
// Compares a screen whose language has changed while it was shown with one made in that language.
#include "look/LiveChange.h"

#include <algorithm>

#include "look/Words.h"

namespace look {

Snapshot::Snapshot(ScreenHarness& harness, const Scene& scene, const Vocabulary& vocabulary) {
    const Inventory inventory(harness, scene, vocabulary);
    for (const Text& text : inventory.texts) {
        m_texts.push_back({text.words, text.box});
    }
    for (const Control& spinner : inventory.spinners) {
        // Its circle may be larger than the widget.
        m_spinners.push_back(spinner.box.grown(spinner.box.height()));
    }
    m_picture = harness.draw().copy();
}

void Snapshot::compare(const Snapshot& fresh, const std::vector<std::string>& kept,
                       Report& report) const {
    compareTexts(fresh, kept, "is there only after the change", report);
    fresh.compareTexts(*this, kept, "is there only on a fresh screen", report);
    if (kept.empty()) {
        // How far the spinner has turned depends on when it began.
        report.check("live", m_picture.differsOnlyIn(fresh.m_picture, m_spinners),
                     "the picture differs from that of a fresh screen in " +
                         m_picture.differenceTo(fresh.m_picture).words());
    }
}

void Snapshot::compareTexts(const Snapshot& other, const std::vector<std::string>& kept,
                            const std::string& complaint, Report& report) const {
    for (const Words& mine : m_texts) {
        const bool same =
            std::any_of(other.m_texts.begin(), other.m_texts.end(), [&](const Words& its) {
                return mine.words == its.words &&
                       (!kept.empty() || mine.box.words() == its.box.words());
            });
        const bool stays = std::find(kept.begin(), kept.end(), coreOf(mine.words)) != kept.end();
        report.check("live", same || stays,
                     "\"" + mine.words + "\" at " + mine.box.words() + " " + complaint);
    }
}

}  // namespace look
