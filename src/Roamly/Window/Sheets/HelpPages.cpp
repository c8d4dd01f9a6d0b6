// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/HelpPages.h>

#include <QFile>
#include <QTextDocumentFragment>
#include <algorithm>

// Resources of a static library are there only once somebody asks for them; the macro wants no namespace.
static void registerHelp() {
    Q_INIT_RESOURCE(help);
}

using namespace Qt::StringLiterals;

namespace Sheets {

namespace {

HelpPage page(const QString& name, const QString& title) {
    QFile file{u":/help/%1.html"_s.arg(name)};
    return {.name = name,
            .title = title,
            .html = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString{}};
}

} // namespace

const std::vector<HelpPage>& helpPages() {
    static const std::vector<HelpPage> pages = [] {
        registerHelp();
        return std::vector<HelpPage>{page(u"first-film"_s, u"First film"_s),
                                     page(u"reviewing"_s, u"Reviewing"_s),
                                     page(u"places"_s, u"Places"_s),
                                     page(u"similar-photos"_s, u"Similar photos"_s),
                                     page(u"captions-and-privacy"_s, u"Captions and privacy"_s),
                                     page(u"music"_s, u"Music"_s),
                                     page(u"playing"_s, u"Playing"_s),
                                     page(u"exporting"_s, u"Exporting"_s),
                                     page(u"command-line"_s, u"Command line"_s),
                                     page(u"keyboard-shortcuts"_s, u"Keyboard shortcuts"_s)};
    }();
    return pages;
}

std::vector<const HelpPage*> findHelpPages(const QString& words) {
    const QStringList wanted = words.simplified().split(u' ', Qt::SkipEmptyParts);
    std::vector<const HelpPage*> found;
    for (const HelpPage& page : helpPages()) {
        const QString text = page.title + u' ' + QTextDocumentFragment::fromHtml(page.html).toPlainText();
        if (std::all_of(wanted.begin(), wanted.end(),
                        [&text](const QString& word) { return text.contains(word, Qt::CaseInsensitive); }))
            found.push_back(&page);
    }
    return found;
}

} // namespace Sheets
