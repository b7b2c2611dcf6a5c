// The manual's pages as Markdown.
#pragma once

#include <QString>

#include <functional>

namespace velmora {

/// Where a link or an image of the page is found from the Markdown file.
using LinkTarget = std::function<QString(const QString& target)>;

/// The body of an HTML page in Markdown, as repository browsers show it: headings, paragraphs, flat lists,
/// tables with a row of headings, images, links, code. Anchors stay as HTML. Throws std::invalid_argument
/// naming an element for which it has nothing.
QString markdownOf(const QString& html, const LinkTarget& target);

} // namespace velmora
