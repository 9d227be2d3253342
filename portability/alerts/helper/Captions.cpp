#include "portability/alerts/helper/Captions.h"

#include <glib.h>

#include <string_view>

namespace alerthelper {
namespace {

struct Translation {
    std::string_view language;
    const char* help;
};
constexpr Translation kTranslations[] = {{"de", "Hilfe"}, {"en", "Help"}, {"fr", "Aide"}};

std::string withoutMnemonic(std::string caption) {
    const size_t mark = caption.find('_');
    if (mark != std::string::npos) caption.erase(mark, 1);
    return caption;
}

}  // namespace

const char* helpCaption() {
    for (const char* const* name = g_get_language_names(); *name != nullptr; ++name) {
        for (const Translation& known : kTranslations) {
            if (known.language == *name) return known.help;
        }
    }
    return "Help";
}

std::string captionOrStandard(const std::vector<std::string>& captions, size_t index) {
    if (!captions[index].empty()) return captions[index];
    const bool isCancel = index > 0 && index + 1 == captions.size();
    return withoutMnemonic(g_dgettext("gtk40", isCancel ? "_Cancel" : "_OK"));
}

}  // namespace alerthelper
