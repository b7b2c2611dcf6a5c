// What the runs over a company's phone book have in common.
#pragma once

#include "runs/run_report.h"

namespace velmora {

class MMain;

/// The book of a company, and a folder.
struct PhoneBookRequest {
    QString company;
    /// The model whose phones load the book; empty for a run that concerns no model.
    QString equipment;
    QString folder;
};

/// Whether the company has phones (of the model, where one is named); shown otherwise (M8).
bool hasPhones(MMain& main, const QString& company, const QString& equipment);

/// Makes the phones of the company (of the model, where one is named) the shared record set, the first one
/// the current phone. False, after the message M7 or M8, when the folder does not exist or there are none.
bool openPhones(MMain& main, const PhoneBookRequest& request);

/// Whether phones of the current phone's model load phone books; shown otherwise (M10).
bool loadsPhoneBooks(MMain& main);

} // namespace velmora
