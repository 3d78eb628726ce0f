// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "fuzzing.h"
#include "manager/externalunsignedzorvingredientmanager.h"

namespace {

/// Validates the file and counts what is reported.
struct Validation {
    Validation(ExternalUnsignedZorvIngredientManager *manager, const QString &file)
    {
        const auto status = QObject::connect(
            manager, &ExternalUnsignedZorvIngredientManager::statusMessage,
            [this](const QString &message) {
                sections += message.startsWith(QLatin1String("\nVerify header")) ? 1 : 0;
            });
        const auto error = QObject::connect(
            manager, &ExternalUnsignedZorvIngredientManager::errorMessage, [this] { ++errors; });
        isSound = manager->validateXmlFile(file);
        QObject::disconnect(status);
        QObject::disconnect(error);
    }

    bool isSound = false;
    int sections = 0;
    int errors = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const MemoryFile file(data, size);
    ExternalUnsignedZorvIngredientManager manager;
    const Validation first(&manager, file.path());
    require(!first.isSound || first.errors == 0, "a sound file brings no error");
    const Validation second(&manager, file.path());
    require(second.isSound == first.isSound, "the same file gets the same verdict");
    require(second.sections == 2 * first.sections, "sections of earlier files are verified again");
    require(manager.getSupportedViews().isEmpty(), "validating loads nothing");
    return 0;
}
