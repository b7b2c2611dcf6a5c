// Where the files of a model's phones go.
#pragma once

#include "modules/modules.h"

#include <optional>

namespace velmora {

class MMain;

/// What is remembered of the files for a model of a company.
struct Destination {
    /// May hold a phone macro; empty where none is remembered.
    QString folder;
    Levels levels;
};

/// The module of the model; null where it has none.
const Module* moduleOfModel(MMain& main, const QString& model);

/// The writer of the model's files; null where its phones load none.
const Writer* writerOf(MMain& main, const QString& model);

Destination rememberedDestination(MMain& main, const QString& company, const QString& model);

/// The message for a name, made of database texts, that no file can have: it would lead to another folder, or
/// the system does not allow it. Empty for any other.
QString refusalOfFileName(const QString& name);

/// Whether `folder`, made from `pattern` by replacing a macro in it, is where the pattern leads for every
/// phone: what stands for the macro must be a part of one folder's name.
bool followsPattern(const QString& folder, const QString& pattern);

/// The folder of the phone's files as this platform names it; nothing where no folder is remembered, its
/// macro is refused or leads elsewhere, or the system does not allow its name.
std::optional<QString> folderFor(const Destination& destination, const Phone& phone);

/// The file that the phone loads, in its folder; nothing where there is none, or its name is that of no file.
std::optional<QString> deviceFilePath(const Destination& destination, const Writer& writer,
                                      const Phone& phone);

} // namespace velmora
