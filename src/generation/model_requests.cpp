#include "generation/model_requests.h"

#include "common/MMain.h"
#include "generation/destination.h"
#include "runs/phone_selection.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

GenerationRequest requestFor(MMain& main, const PhoneChoice& choice, const QString& model)
{
    const Destination remembered = rememberedDestination(main, choice.company, model);
    GenerationRequest request;
    request.company = choice.company;
    request.equipment = model;
    request.phoneFrom = choice.from;
    request.phoneTo = choice.to;
    request.levels = remembered.levels;
    request.folder = remembered.folder;
    request.codes = choice.codes;
    if (choice.from.isEmpty() || choice.to.isEmpty()) {
        const QList<ListEntry> phones = phonesOf(main, choice.company, model);
        if (!phones.isEmpty() && choice.from.isEmpty())
            request.phoneFrom = phones.first().code;
        if (!phones.isEmpty() && choice.to.isEmpty())
            request.phoneTo = phones.last().code;
    }
    return request;
}

} // namespace

QList<GenerationRequest> requestsFor(MMain& main, const PhoneChoice& choice)
{
    if (!choice.equipment.isEmpty())
        return {requestFor(main, choice, choice.equipment)};
    QList<GenerationRequest> requests;
    for (const ListEntry& model : modelsOf(main, choice.company)) {
        const GenerationRequest request = requestFor(main, choice, model.code);
        if (!selectedPhones(main, request).eof())
            requests << request;
    }
    return requests;
}

QStringList codesWithoutPhone(MMain& main, const QList<GenerationRequest>& requests)
{
    QStringList codes = requests.isEmpty() ? QStringList() : requests.first().codes.value_or(QStringList());
    for (const GenerationRequest& request : requests)
        for (Recordset phones = selectedPhones(main, request); !codes.isEmpty() && !phones.eof();
             phones.moveNext())
            codes.removeAll(phones.text("PH_CODE"_L1));
    return codes;
}

} // namespace velmora
