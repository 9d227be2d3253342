// The functions of the second module that the first one and the command-line tool call. Private to this folder.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "portability/foundation/FirstUse.h"
#include "ui/alerts/ModalAlert.h"
#include "ui/information/SystemReport.h"

namespace portability {

/// The functions of the second module. Their contracts are in the headers that declare the functions of the
/// same names.
struct FoundationEntries {
    // The first two members stay in this place, so that a module of another version can be recognised.
    size_t size;          ///< sizeof(FoundationEntries)
    const char* version;  ///< the product's version

    void (*useFoundation)() noexcept;
    decltype(&dovrel::runModalAlert) runModalAlert;
    std::optional<std::string> (*formatPropertyList)(const std::string& list);
    bool (*runOnMainRunLoop)(void* (*procedure)(void*), void* parameter, void** result);
    decltype(&dovrel::systemReport) systemReport;  ///< for the command-line tool
};

}  // namespace portability

/// The only symbol that the second module exports.
extern "C" __attribute__((visibility("default")))
const portability::FoundationEntries dovrelFoundationEntries;
