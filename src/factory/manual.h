// Writing the manual.
#pragma once

#include <QString>

namespace velmora {

/// Writes manual.htm, the page where the manual begins, into `outputFolder`, and the page of each language
/// with the images that it shows into its folder "manual". The pages come from the templates in "manual" of
/// `dataFolder`, one for each language of texts.csv, in which
///   {{FMAIN_CONFIG}}  is the caption of that code, as the language's windows show it;
///   {{messages}}      is a table of all messages, with the explanations of messages.csv;
///   {{contents}}      is a list of links to the headings; in the first page {{contents_en}} those of a
///   language.
/// Throws FileError naming a template with another placeholder, or a file that is missing.
void writeManual(const QString& dataFolder, const QString& imageFolder, const QString& outputFolder);

/// Writes manual-en.md and manual-fr.md, the same pages in Markdown, into `docsFolder`, whose folder "images"
/// holds their images. Throws as writeManual does, and std::invalid_argument for an element that Markdown has
/// not.
void writeManualAsMarkdown(const QString& dataFolder, const QString& docsFolder);

} // namespace velmora
