#include "platform/dom/quiet_errors.h"

#include <libxml/globals.h>

namespace qvr::dom {

QuietErrors::QuietErrors()
    : savedStructured_(xmlStructuredError), savedStructuredContext_(xmlStructuredErrorContext),
      savedGeneric_(xmlGenericError), savedGenericContext_(xmlGenericErrorContext) {
    xmlSetStructuredErrorFunc(this, &QuietErrors::onError);
    xmlSetGenericErrorFunc(this, &QuietErrors::onGeneric);
}

QuietErrors::~QuietErrors() {
    xmlSetStructuredErrorFunc(savedStructuredContext_, savedStructured_);
    xmlSetGenericErrorFunc(savedGenericContext_, savedGeneric_);
}

void QuietErrors::onError(void* self, xmlErrorPtr error) {
    auto* quiet = static_cast<QuietErrors*>(self);
    if (!error || error->level < XML_ERR_ERROR) return;
    const bool fatal = error->level == XML_ERR_FATAL;
    if (quiet->seen_ && (quiet->fatal_ || !fatal)) return;
    quiet->seen_ = true;
    quiet->fatal_ = fatal;
    quiet->first_.code = error->code;
    quiet->first_.line = error->line;
    quiet->first_.column = error->int2;
    try {
        quiet->first_.message = error->message ? error->message : "";
    } catch (...) {
        quiet->first_.message.clear(); // called from C: nothing may be thrown through it
    }
    while (!quiet->first_.message.empty() &&
           (quiet->first_.message.back() == '\n' || quiet->first_.message.back() == '\r'))
        quiet->first_.message.pop_back();
}

void QuietErrors::onGeneric(void*, const char*, ...) {}

} // namespace qvr::dom
